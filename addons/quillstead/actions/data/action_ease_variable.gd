extends SCEaseVariableAction
## Move a variable toward a value over time instead of jumping to it, for a fuel gauge settling, a difficulty
## creeping up, a light dimming, a colour fading or a place drifting.
