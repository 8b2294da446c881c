extends SCReadFileAction
## Read a text file into a String variable, such as a list of names to pick from, the words of a letter or a sign, a
## level laid out in letters, or notes the player wrote with Write File.
