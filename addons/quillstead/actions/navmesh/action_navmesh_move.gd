extends SCNavigateToAction
## Walk to somewhere along the navigation mesh, finding a way round walls. The character has a NavigationAgent2D or
## NavigationAgent3D under it, and the level a NavigationRegion with a baked mesh.
