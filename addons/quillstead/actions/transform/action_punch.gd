extends SCPunchAction
## Kick a node's position, rotation or scale and let it spring back to where it was, wobbling as it settles. A
## button that was pressed, a crate that was hit, a coin that was collected.
