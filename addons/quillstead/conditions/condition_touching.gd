extends SCTouchingCondition
## True while something is touching, such as a player standing in a trigger, a crate resting on a plate, or a
## character with its feet on the ground or its shoulder against a wall.
