extends SCWriteFileAction
## Write words into a text file, or add them to its end. Folders on the way to it that are not there are made. A
## file that is replaced stays whole until the new one is, so that a full disk or a power cut does not lose it.
