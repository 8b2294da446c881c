extends SCMathAction
## Arithmetic on numbers, into a variable.
