extends SCGridMapCellAction
## Change or look at one cell of a GridMap, Godot's 3D grid of pieces. Build a wall where the mouse points, blow one
## up, find out what the player stands on.
