extends SCSetPropertyAction
## Set any property on any node, such as visible, modulate, text, speed, or whatever the node has.
