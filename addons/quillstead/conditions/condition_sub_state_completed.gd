extends SCSubStateFinishedCondition
## True once the work inside this state is done.
