extends SCDictionaryAction
## Work with a table held in a variable. A table keeps values under keys, such as how many of each ore was mined,
## the price of everything in a shop, or who owes whom.
