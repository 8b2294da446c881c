extends SCToGlobalAction
## Turn a place in a node's own space into a place in the world, the way Godot's to_global does. Where the tip of a
## turned sword is, or a spot two metres in front of a car.
