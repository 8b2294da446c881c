extends SCAddItemAction
## Put something in an inventory, such as loot into the player's pack, stock onto a shop shelf or a key into a
## chest.
