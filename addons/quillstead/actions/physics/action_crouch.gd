extends SCCrouchAction
## Make a character shorter while the state runs, and its own height again when the state is left. Its feet stay
## where they are. It never holds a state up.
