extends SCAssertAction
## Make sure something that must always be true is true, and stop the game as soon as it is not, with a message in
## the Output panel saying what went wrong and where.
