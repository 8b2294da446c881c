extends SCEquipItemAction
## Wear something, putting a sword into the weapon slot or a helmet onto the head.
