extends SCGiveItemAction
## Give an item to a machine, usually the player's. Its Changes are made there and stay until it is taken back, as
## with the powers that are found on the way through a dungeon. It goes into no inventory.
