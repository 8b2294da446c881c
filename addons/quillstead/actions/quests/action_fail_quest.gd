extends SCFailQuestAction
## Fail a quest that is under way, for example when the prisoner was not saved in time or the cart was lost. Its
## steps stop counting, and its Failed Event is sent.
