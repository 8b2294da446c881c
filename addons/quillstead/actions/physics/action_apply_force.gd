extends SCApplyForceAction
## Push a physics body with a shove, a jump, a wind or an explosion. A shove is a blow, done at once. A steady push
## goes on for as long as the state runs, and holds nothing up.
