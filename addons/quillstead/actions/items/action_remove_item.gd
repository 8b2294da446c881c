extends SCRemoveItemAction
## Take something out of an inventory, such as spending a key on a door, paying for a purchase, or a thief lifting a
## purse.
