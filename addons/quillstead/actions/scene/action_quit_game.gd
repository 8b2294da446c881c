extends SCQuitGameAction
## Close the game. What is left of this frame is still played, and every state that is on is left as it would be at
## any other time. A game in a browser and an app on an iPhone are closed by the player alone: there this does
## nothing but send Failed Event.
