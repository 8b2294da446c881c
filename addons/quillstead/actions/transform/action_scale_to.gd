extends SCScaleToAction
## Grow or shrink a node to a size over time, then finish. A mushroom that makes the player big, a balloon, a picked
## up coin that shrinks away.
