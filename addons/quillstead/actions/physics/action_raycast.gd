extends SCRaycastAction
## Look along a line and see what is there, such as the ground under a foot, a wall ahead, or the thing a gun is
## pointing at. On Every Frame the events are sent only when the answer changes. Right after a scene has begun it
## waits a frame for the physics: tick Wait For Previous on what uses the answer.
