extends SCLookAtAction
## Turn a node to face another node, the mouse pointer, a place, or a direction, at once or over time. A turret, a
## head that follows the player, a sign that always faces the camera. In 2D it is the right side that faces, in 3D
## the front.
