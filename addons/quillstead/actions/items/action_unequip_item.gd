extends SCUnequipItemAction
## Take something off.
