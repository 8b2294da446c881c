extends SCGoToPreviousStateAction
## Go back to the state the machine came from, without a transition naming it.
