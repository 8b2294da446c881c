extends SCRunProgramAction
## Start another program on the computer and carry on. It is given its arguments one by one, as they are, and no
## shell has a look at them, so that nothing a player types is taken for a command. On phones and in browsers there
## are no other programs.
