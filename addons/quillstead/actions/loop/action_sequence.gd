extends SCSequenceAction
## Send a different event each time this state is reached, working down a list in order.
