extends SCInputCondition
## True while a key, a mouse button or a gamepad input is held, or on the frame it is pressed or released.
