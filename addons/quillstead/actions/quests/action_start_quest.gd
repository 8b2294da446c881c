extends SCStartQuestAction
## Begin a quest. One that is under way or done is left as it is, and one that failed or was given up begins again
## from its first step.
