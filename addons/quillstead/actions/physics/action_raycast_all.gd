extends SCRaycastAllAction
## Look along a line and find everything on it, not only the first thing. For a shot that goes through several
## enemies, or all the lamps along a beam. On Every Frame the events are sent only when the answer changes.
