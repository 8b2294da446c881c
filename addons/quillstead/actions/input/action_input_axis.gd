extends SCGetInputVectorAction
## Put the direction the player is holding into a variable, from the arrow keys, WASD or a stick.
