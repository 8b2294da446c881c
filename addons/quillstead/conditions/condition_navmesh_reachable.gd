extends SCNavigationReachableCondition
## Can it actually get there? True while the navigation mesh has a way all the way to a node or a place, so that an
## enemy does not set out after somebody behind a locked door.
