extends SCCompareCondition
## Compare two numbers, either of them a variable.
