extends SCCountItemAction
## How many of something an inventory is carrying, into a variable.
