extends SCGroupAction
## Work with a group, the way Godot sorts nodes into named sets. Put a node into one or take it out, or find who is
## in it: all of them, the nearest, one at random, or how many.
