extends SCPatrolAction
## Walk a round from one marker to the next, waiting at each, for ever. It keeps how far it has got in a variable,
## so that it goes on from there when it has been called away. A walker turns back where its floor ends.
