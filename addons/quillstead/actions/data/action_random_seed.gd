extends SCRandomSeedAction
## Set the seed every random choice follows, for dice rolls, chances, random events, loot and floors. The same seed
## gives the same game again, as in a daily challenge or a world that a friend can visit.
