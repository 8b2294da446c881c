extends SCMoveToBinAction
## Move a file or a folder, and everything in it, to the computer's Bin (the Recycle Bin on Windows), for example a
## save the player deletes, or a whole game in a launcher. The player can take it out of there again, unless the
## computer is set to have no Bin.
