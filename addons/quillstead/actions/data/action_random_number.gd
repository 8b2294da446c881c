extends SCRandomNumberAction
## Put a random number into a variable. Use it for a roll of the dice, how long to wait, how much gold the chest
## holds or which door the monster comes through.
