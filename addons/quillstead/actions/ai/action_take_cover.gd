extends SCTakeCoverAction
## Get behind something. It goes to the nearest of the spots that whatever the Perception node is dealing with
## cannot see, and finishes there.
