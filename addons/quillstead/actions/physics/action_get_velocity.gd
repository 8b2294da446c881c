extends SCGetVelocityAction
## Read how fast a body is moving, and which way. Pick a variable for each thing that is to be known: a speedometer
## takes the speed, a check for falling the rise.
