extends SCBuildDungeonAction
## Build a floor of rooms with a new layout every run, made from rooms you draw by hand.
