extends SCGetVectorComponentsAction
## Take a Vector apart into Numbers. How high something is, for one, or how fast it moves sideways.
