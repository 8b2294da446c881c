extends SCSetTimeScaleAction
## Speed the game up or slow it down, for a hit stop, a slow-motion finish or a pause. It goes for the whole game,
## and stays until another Set Time Scale changes it, unless Lasts or Put Back When Left says otherwise.
