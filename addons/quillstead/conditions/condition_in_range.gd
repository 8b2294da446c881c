extends SCInRangeCondition
## How near the character is to what it is dealing with. True while that is close enough to strike, say, but not so
## close that a bow is of no use.
