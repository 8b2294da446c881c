extends SCPaintTerrainAction
## Paint the map with a terrain while the game runs, and let the edges look after themselves. A path trodden into
## the grass, water that spreads, tunnels dug into the rock. The terrains are those of the tile set, under Terrain
## Sets.
