extends SCGetParentAction
## Put the node a node sits directly under, its parent, into a Node variable. Or the nearest node above it that is
## of a kind, such as the Enemy that a hit box belongs to.
