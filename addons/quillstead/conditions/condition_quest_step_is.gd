extends SCQuestStepIsCondition
## Where one step of a quest has got, whether done, not done, or the one to do now.
