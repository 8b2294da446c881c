extends SCRaycastAllAction
## Look along a line and find everything on it, not only the first thing. For a shot that goes through several
## enemies, or all the lamps along a beam. On Every Frame the events are sent only when the answer changes. Right
## after a scene has begun it waits a frame for the physics: tick Wait For Previous on what uses the answer.
