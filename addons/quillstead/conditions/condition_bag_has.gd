extends SCInventoryHasCondition
## What an inventory is carrying.
