extends SCGetOverlappingAction
## Ask an area what is inside it right now and put the answer in a list, such as every enemy in the blast,
## everything standing on the pressure plate or every coin within reach. On Every Frame the events are sent only
## when the answer changes.
