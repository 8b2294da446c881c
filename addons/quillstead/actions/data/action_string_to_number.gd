extends SCStringToNumberAction
## Read a number out of text into a float or int variable. It takes the first number there is, so it reads 12 out of
## "Level 12" and -3.5 out of "-3.5 degrees".
