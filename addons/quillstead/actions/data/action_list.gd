extends SCArrayAction
## Work with a list held in a variable. Add what was picked up, take the top card off a deck, pick one of several
## spawn points, or put scores in order.
