extends SCSetVectorComponentsAction
## Change one part of a Vector variable and leave the rest as they are. The height of a place, for one.
