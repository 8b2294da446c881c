extends SCEventOnSignalAction
## Listen to any node's signal while this state runs and send an event when it fires, such as a button pressed, a
## body entering an area or a timer finishing.
