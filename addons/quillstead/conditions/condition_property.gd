extends SCPropertyCondition
## Compare any property of any node with a value.
