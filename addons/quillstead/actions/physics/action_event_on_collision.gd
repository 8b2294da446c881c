extends SCEventOnCollisionAction
## Send an event when something touches this node, or stops touching it, as when the player walks into a trigger, a
## bullet hits a wall or a coin is picked up. It listens as long as the state runs and does not hold it up.
