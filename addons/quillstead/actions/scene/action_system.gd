extends SCSystemAction
## The things a game asks of the computer or phone it runs on: open a web page, copy and paste, keep the screen on,
## and what kind of computer it is.
