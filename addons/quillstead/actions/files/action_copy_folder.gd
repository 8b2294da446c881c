extends SCCopyFolderAction
## Copy a folder and everything in it to somewhere else on the computer, for example a starter project into the
## place the player chose, a set of levels into their own folder, or a backup of their saves. A large folder takes
## several frames, and the game goes on meanwhile.
