extends SCStaminaAction
## Keep a meter that empties while something is being done and fills up again while it is not. Put one that spends
## into the state that tires and one that does not into the others. It never holds a state up.
