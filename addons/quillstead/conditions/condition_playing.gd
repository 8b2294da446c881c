extends SCPlayingCondition
## Ask what an animation or a sound is doing.
