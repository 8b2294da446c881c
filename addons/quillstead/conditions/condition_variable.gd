extends SCVariableCondition
## Compare one of the machine's variables with a value.
