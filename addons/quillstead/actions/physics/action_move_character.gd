extends SCMoveCharacterAction
## Walk a character about, such as a player driven by the keys, an enemy closing in or an NPC on its rounds. It is
## what actually moves the body: Jump, Dash and Set Velocity only set its speed. It never holds a state up, so it
## stands beside what else the state does, or on the state above.
