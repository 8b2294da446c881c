extends SCSetDataAction
## Change one field of a Data record while the game runs, such as this enemy's own Health on its Data node, or the
## sword's Damage once it is sharpened. A file's record is changed for everything that uses it until the game stops,
## and is not saved into the file.
