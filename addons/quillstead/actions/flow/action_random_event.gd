extends SCRandomEventAction
## Send one of several events at random, so a state can branch differently each time, such as an enemy that
## sometimes dodges or a machine that picks a room.
