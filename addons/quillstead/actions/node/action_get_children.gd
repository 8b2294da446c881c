extends SCGetChildrenAction
## Look at the nodes directly under a node, its children. Keep all of them as a list, how many there are, or one of
## them.
