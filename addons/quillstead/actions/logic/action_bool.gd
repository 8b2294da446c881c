extends SCBoolOperatorAction
## True-or-false sums into a variable, such as 'both of these', 'either of these', 'not this' or 'one of these but
## not both'.
