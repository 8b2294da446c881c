extends SCGetNavigationPointAction
## Pick a place on the navigation mesh and put it in a variable. Somewhere for Navigate To to stroll to, a spot
## where an enemy can appear, the nearest firm ground. A level that has only just been loaded gets a moment to build
## its mesh.
