extends SCFleeAction
## Run away from whatever the Perception node is dealing with. It heads straight away from it until it is far enough
## off, and again when it comes nearer. With a navigation agent under the character it finds its way round walls.
