extends SCHealAction
## Give health back, for a potion drunk, a first-aid kit picked up, a healer's spell, a campfire that mends a little
## every second, or a checkpoint that puts the player back on their feet.
