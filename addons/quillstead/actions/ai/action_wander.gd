extends SCWanderAction
## Amble about near a spot, with a pause between each stroll. Each stroll leads to another place within the radius,
## on the navigation mesh if there is one. A walker turns back where its floor ends.
