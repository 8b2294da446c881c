extends SCGetLastCollisionAction
## Find out what a character last bumped into as it moved, with the node, the point where they met and the way that
## surface faces. On Every Frame the events are sent only when the answer changes.
