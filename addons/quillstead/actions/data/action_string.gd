extends SCStringAction
## Work with text. Make a name upper case, cut off its first letter, look for a word in what the player typed, or
## split a line into a list.
