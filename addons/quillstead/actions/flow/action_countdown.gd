extends SCTimerAction
## Count a variable down in game time and send an event when it reaches zero, for a round timer, a fuse, or a
## power-up wearing off.
