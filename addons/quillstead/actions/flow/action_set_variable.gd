extends SCSetVariableAction
## Set, add to, take away from, multiply or toggle one of the machine's variables.
