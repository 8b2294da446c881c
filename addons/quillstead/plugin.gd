@tool
extends EditorPlugin
## The editor's side of QuillStead. The library registers its own classes, so there is nothing to set up here.
