extends SCWallClingAction
## Catch a character falling past a wall. While it is pressed against one, off the floor and not rising, it slides
## down slowly or not at all. It never holds a state up and stands beside the Move Character that presses it there;
## a Jump with Off Walls takes it off again.
