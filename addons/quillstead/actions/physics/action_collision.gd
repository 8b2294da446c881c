extends SCSetCollisionAction
## Switch a node's collision on or off, or change which layers it is on and which it bumps into, with the layers
## picked by name, such as World, Player, Enemies and Pickups.
