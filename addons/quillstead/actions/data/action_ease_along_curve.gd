extends SCEaseAlongCurveAction
## Move a variable toward a value over time along a Curve you draw, not one of the ready-made shapes Ease Variable
## offers. A curve that comes down again at its end leads the variable back.
