extends SCAddNodeAction
## Add a new node of one of Godot's own kinds while the game runs. A Timer, a Marker2D, a Label, a light. Set
## Property fills it in; Instantiate adds a whole scene.
