extends SCCallStaticMethodAction
## Call a method that belongs to a class, not to a node in the scene, with up to two arguments, and keep what it
## gives back. It calls the static methods of Godot's classes and of your own scripts with a class_name, and those
## of OS, Input and the like, of which a game has one each.
