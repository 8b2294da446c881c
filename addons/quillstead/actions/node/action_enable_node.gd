extends SCEnableNodeAction
## Switch a node off completely, or on again, for an enemy waiting in a room the player has not reached, a trap that
## is not armed yet, a door that is not there at all until a lever is pulled, or a whole group of pickups that only
## appear in the second half of a level. What is off is not seen, touches nothing and does nothing, with all that is
## under it, and goes on as it was once it is on.
