extends SCSendEventAction
## Send a named event to this machine, to every machine in a group, or to every machine in the game.
