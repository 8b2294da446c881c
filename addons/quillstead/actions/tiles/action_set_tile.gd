extends SCSetCellAction
## Change the map while the game runs. Dig out a block, open a door made of tiles, leave burnt ground behind, build
## with the mouse. The edges of the tiles around it stay as they are: Paint Terrain looks after those.
