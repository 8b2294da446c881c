extends SCChaseAction
## Go after whatever the Perception node is dealing with, keeping after it as it moves. It stops a little short of
## it, and goes on when it gets away. With a navigation agent under the character it finds its way round walls.
