extends SCRotateAction
## Keep a node turning at a steady speed, in degrees per second, for as long as the state runs. A coin, a fan, the
## hand of a clock. It does not hold the state up: what else the state does decides when it is finished.
