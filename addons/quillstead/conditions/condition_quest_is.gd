extends SCQuestIsCondition
## Where a quest has got, whether not started, active, done or failed.
