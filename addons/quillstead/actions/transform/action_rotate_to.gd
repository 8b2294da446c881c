extends SCRotateToAction
## Turn a node to an angle, in degrees. A door that swings open, a lever that is thrown, a card that is turned over.
## It finishes when it is there.
