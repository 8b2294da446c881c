extends SCGetCellAction
## Ask a tile map what is at a place. Is the ground here ice, lava or grass, is there a wall to the right, what did
## the player just click on? What a tile is like is written into the tile set, under Custom Data Layers.
