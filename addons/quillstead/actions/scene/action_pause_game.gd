extends SCPauseGameAction
## Freeze the game, or let it run again. A node whose Process Mode is Always or When Paused goes on while the game
## is paused, with all below it: give that to the pause menu, and to the machine that lets the game run again.
