extends SCChangeSceneAction
## Go to another scene to start the game from a menu, go back to the menu, load the next level, or start this level
## again. Global variables stay, and a machine whose template has Carries Over ticked goes on in the next scene with
## its variables and inventories.
