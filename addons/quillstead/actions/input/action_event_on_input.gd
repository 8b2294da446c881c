extends SCEventOnInputAction
## Send an event when a key, a mouse button or a gamepad input is pressed, released, held, tapped twice quickly, or
## held for a time.
