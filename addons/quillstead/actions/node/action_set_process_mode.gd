extends SCSetProcessModeAction
## Choose whether a node keeps running while the game is paused. A pause menu and its music run on, the level stands
## still.
