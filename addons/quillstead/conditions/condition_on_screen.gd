extends SCOnScreenCondition
## True while a node is on the screen.
