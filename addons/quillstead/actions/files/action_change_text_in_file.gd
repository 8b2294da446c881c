extends SCChangeTextInFileAction
## Change some words inside a text file on the computer. What else is in the file stays as it is, and a file that
## does not hold the words is not touched.
