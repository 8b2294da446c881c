extends SCShapeCastAction
## Ask the physics world what is inside a circle or a box, with no Area needed. For whoever stands around a bomb, or
## with a Distance for what a thick beam or a charging bull would run into. On Every Frame the events are sent only
## when the answer changes. Right after a scene has begun it waits a frame for the physics: tick Wait For Previous
## on what uses the answer.
