extends SCShowItemAction
## Show an item, with its picture on a sprite or a picture box and its name and its line in labels, for a pedestal,
## a shop shelf, a popup or a collection page. Without an item they are cleared.
