extends SCForEachAction
## Walk through a list one item at a time, such as every enemy in the room, every spawn point or every line of
## dialogue.
