extends SCGetLastEventAction
## Put the name of the event that brought the machine into this state into a String variable.
