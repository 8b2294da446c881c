extends SCGetSceneAction
## Put the name of the scene that is running now, or its file, into a String variable.
