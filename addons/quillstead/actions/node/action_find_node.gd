extends SCFindChildAction
## Find a node by its name and put it in a variable, so other actions can work on it.
