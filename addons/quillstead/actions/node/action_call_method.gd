extends SCCallMethodAction
## Call a method on any node, with up to two arguments, picked from the ones the node has. A method is something a
## node can do: play, stop, grab_focus, take_damage.
