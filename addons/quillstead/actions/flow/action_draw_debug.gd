extends SCDrawDebugAction
## Draw a line, a ray, a circle or a box in the running game, to see what a template is doing while you test it.
