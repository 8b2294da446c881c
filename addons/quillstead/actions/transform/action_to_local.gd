extends SCToLocalAction
## Turn a place in the world into a place in a node's own space, the way Godot's to_local does. With it a machine
## can tell whether the player is in front of it or behind, left or right.
