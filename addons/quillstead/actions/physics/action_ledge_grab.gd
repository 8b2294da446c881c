extends SCLedgeGrabAction
## Catch the top of a wall the character has jumped at, and pull it up onto it. Go to its state while the character
## is pressed against the wall. It moves the body by itself, so no Move Character goes beside it.
