extends SCChooseFolderAction
## Ask the player to choose a folder on their computer, with the computer's own folder window. Where the computer
## has none, the game shows one. Its state is finished when the player has answered.
