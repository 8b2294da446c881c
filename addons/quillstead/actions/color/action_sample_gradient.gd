extends SCSampleGradientAction
## Pick a colour along a Gradient you draw, by a number. A health bar that goes from green to red, the sky through
## the day, metal that glows as it heats up.
