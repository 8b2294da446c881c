extends SCDuplicateAction
## Make a copy of a node already in the game, beside it, such as another enemy like this one, a second coin or a
## clone.
