extends SCGetScreenSizeAction
## Put the size of the screen into Vector2 variables, in pixels.
