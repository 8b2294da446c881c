extends SCPathProgressAction
## Find out how far along a path something has got, however it got there. The places in a race, a progress bar over
## a track, the bomb cart on its rails. It goes by the spot of the path that is nearest; a PathFollow2D or
## PathFollow3D in the path tells its own Progress.
