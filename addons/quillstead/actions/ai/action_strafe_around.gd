extends SCStrafeAroundAction
## Keep circling what it is dealing with. With a radius it also holds that distance; without one it works beside
## Keep Distance or Chase, which do that. It never holds a state up.
