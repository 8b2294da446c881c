extends SCTileCondition
## Ask about the tile at a place. Is there ground ahead, does the player stand on ice, is that door locked?
