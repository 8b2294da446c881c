extends SCUseItemAction
## Use an item. A potion is used up: one comes out of the inventory, and its When Used changes are made. An active
## item is used when it is charged: its charge goes back to zero, and its Use Event is sent.
