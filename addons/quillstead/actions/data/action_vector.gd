extends SCVectorAction
## Sums with directions and places. How far it is to the door, which way the player is, a point halfway between two
## others, or a velocity that bounces off a wall.
