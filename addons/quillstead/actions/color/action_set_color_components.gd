extends SCSetColorComponentsAction
## Change one part of a Color variable and leave the rest as they are. Fade it out, darken it, or let its hue go
## round.
