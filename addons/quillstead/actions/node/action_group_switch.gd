extends SCGroupSwitchAction
## Send one of several events, picked by which group a node is in. What a bullet hit, what stepped on the plate, who
## was spoken to.
