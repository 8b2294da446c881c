extends SCKeepApartAction
## Stop a crowd standing in each other. Each one that runs it gives way to those of the group who come too near,
## while Chase or another kind walks it. It never holds a state up.
