extends SCDialogueLineSaidCondition
## Has a line of a dialogue been said this game?
