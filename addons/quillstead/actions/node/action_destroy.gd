extends SCQueueFreeAction
## Remove a node from the game, or every node in a group, such as all the pickups left on a floor or every bullet
## when a boss dies.
