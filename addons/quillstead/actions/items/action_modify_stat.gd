extends SCModifyStatAction
## Change a number the machine carries under a name, so it can be taken away again later. Boosts, curses, auras and
## what is worn can come and go in any order: the number is always what it started as, plus every addition, times
## every multiplication.
