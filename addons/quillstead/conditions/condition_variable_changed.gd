extends SCVariableChangedCondition
## True on the first check after a variable's value changes, such as a score going up, a target being replaced, or a
## flag being set by another machine. It watches only while its state is running, so what changed before the state
## was entered does not count.
