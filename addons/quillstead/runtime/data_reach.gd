class_name SCDataReach
extends RefCounted
## Where an action or a condition finds its record.

## A record that is a file, one that a variable of the machine holds, or the one of the Data node under a node.
enum From { A_DATA_FILE, A_VARIABLE, DATA_ON_A_NODE }
