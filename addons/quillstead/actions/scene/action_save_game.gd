extends SCSaveGameAction
## Keep some of the machine's variables between one run of the game and the next, such as a high score, which level
## was reached, or whether the tutorial has been seen. Or keep a whole scene as it stands, with everything in it.
