extends SCExplosionAction
## An explosion's reach. Everything that can be pushed is thrown away from its middle, the harder the nearer it is:
## crates, barrels, characters. Their machines can be told, to lose health or to fall over.
