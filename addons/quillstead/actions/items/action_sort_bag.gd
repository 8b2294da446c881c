extends SCSortInventoryAction
## Put an inventory's stacks in order, so a panel draws them tidily.
