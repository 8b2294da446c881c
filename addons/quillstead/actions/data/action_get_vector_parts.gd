extends SCGetVectorComponentsAction
## Take a Vector apart into Numbers, such as how high something is or how fast it moves sideways.
