extends SCStringCompareCondition
## Compare a variable's text with something, such as a name, a password or a state reported by another system.
