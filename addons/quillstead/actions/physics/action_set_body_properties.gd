extends SCSetBodyPropertiesAction
## Change how a physics body behaves while the game runs, one property at a time, picked by name. A crate that gets
## heavy, a floor that turns to ice, a hero who walks on the ceiling.
