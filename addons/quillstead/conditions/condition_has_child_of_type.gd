extends SCHasChildOfTypeCondition
## True when a node has a node of a kind under it.
