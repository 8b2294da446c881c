extends SCDataCondition
## Ask about a field of a Data record, for example is this enemy's Health below 1, is the weapon's Rarity Legendary,
## or is the level's Unlocked on.
