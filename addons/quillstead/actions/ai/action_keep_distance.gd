extends SCKeepDistanceAction
## Hold a sensible distance. It comes nearer when it is too far from whatever the Perception node is dealing with,
## backs off when it is too near, and stands in between. It never holds a state up, so it stands beside what else
## the state does.
