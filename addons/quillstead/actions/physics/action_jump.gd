extends SCJumpAction
## Make a character body jump. It gives the body its speed upward and no more, so a Move Character has to be running
## beside it, in this state or in one around it, to carry the body up and bring it down again.
