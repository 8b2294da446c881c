extends SCGridPathAction
## Find the shortest way across a grid of tiles, going round the walls, and walk it cell by cell, like a unit in a
## tactics game crossing the board, a piece in a puzzle, a mouse in a maze or a monster in a dungeon of tiles.
