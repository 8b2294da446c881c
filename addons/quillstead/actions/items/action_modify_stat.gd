extends SCModifyStatAction
## Change a number the machine carries under a name, so it can be taken away again later. Boosts, curses, auras and
## what is worn may come and go in any order: additions go onto the number first and multiplications count for the
## sum, and when the last of them has gone it is what it was.
