extends SCSetVectorComponentsAction
## Change one part of a Vector variable and leave the rest as they are, such as the height of a place.
