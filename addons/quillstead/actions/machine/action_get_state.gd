extends SCGetStateAction
## Put the name of the state a machine is in into a String variable.
