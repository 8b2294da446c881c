extends SCCanSeeCondition
## True while the character can actually see what it is dealing with, according to its Perception node.
