extends SCDropLootAction
## Drop loot on the floor, as a beaten enemy, a broken pot or an opened chest does in an action role-playing game.
## It slides a little way, and whoever of the group player walks over it picks it up.
