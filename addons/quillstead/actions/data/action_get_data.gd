extends SCGetDataAction
## Read one field of a Data record into a variable, such as the Damage of the sword the player holds, the Speed of
## the enemy type Find Row picked, or this enemy's own Health from its Data node.
