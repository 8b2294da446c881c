@tool
class_name SCItemStack
extends Resource
## So many of one item, lying in one slot of an [SCInventory].

## What it is.
@export var item: SCItem
## How many there are.
@export_range(1, 99, 1, "or_greater", "hide_slider") var how_many: int = 1

## Which slot of its inventory it lies in, counted from 0. The inventory sees to it that no two lie in the same.
var place: int = -1
