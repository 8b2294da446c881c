extends SCEmitSignalAction
## Make a node send one of its signals, with up to two values, as though the node had sent it itself.
