extends SCGetTimeAction
## Put a time into a variable. How long the state has run, how long the game has, or what the player's clock and
## calendar say, for a shop that is closed at night or a gift on New Year's Day.
