extends SCDistanceCondition
## True when another node, or the nearest member of a group, is within a distance of the node the Machine works on.
