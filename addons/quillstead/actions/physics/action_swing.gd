extends SCSwingAction
## Swing a character from a point as if on a rope, such as a grappling hook caught on a ring, a vine, or a chain in
## a dungeon. It moves the body by itself, so no Move Character goes beside it. Leaving the state lets go, and the
## body flies on with the speed it has.
