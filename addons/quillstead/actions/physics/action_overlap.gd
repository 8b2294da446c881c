extends SCGetOverlappingAction
## Ask an area what is inside it right now and put the answer in a list, such as every enemy in the blast,
## everything standing on the pressure plate or every coin within reach. On Every Frame the events are sent only
## when the answer changes. Right after a scene has begun it waits a frame for the physics: tick Wait For Previous
## on what uses the answer.
