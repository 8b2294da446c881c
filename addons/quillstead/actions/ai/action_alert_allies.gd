extends SCAlertAlliesAction
## Tell the others. Everybody of a group who is near enough gets an event, and whom the character deals with, so
## that one guard who saw the player has the whole room after them.
