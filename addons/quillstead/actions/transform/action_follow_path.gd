extends SCFollowPathAction
## Move along a path drawn in the scene, a Path2D or Path3D. A moving platform, a train, a guard on a round, the
## camera of a cutscene. A PathFollow2D or PathFollow3D in the path is moved by its own Progress.
