extends SCMakeNoiseAction
## Make a noise that characters hear, such as a gunshot, a bottle thrown to smash round a corner, a door slammed, an
## alarm bell or footsteps on a creaking floor. It plays no sound. Everybody with a Perception node that is near
## enough hears it, also through walls.
