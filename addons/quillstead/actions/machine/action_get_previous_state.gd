extends SCGetPreviousStateAction
## Put the name of the state the machine came from into a String variable.
