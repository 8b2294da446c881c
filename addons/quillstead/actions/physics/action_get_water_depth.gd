extends SCGetWaterDepthAction
## Read how deep someone is in the water, from the surface down to their feet, into a variable. It is 0 out of the
## water, little for who wades and more than their own height for who dives.
