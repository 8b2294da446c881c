extends SCMoveItemAction
## Move something from one inventory to another, such as taking loot out of a chest, buying from a shop, handing a
## quest item to somebody or dropping a purse when robbed.
