extends SCGetColorComponentsAction
## Take a Color apart into floats. Each lies between 0 and 1.
