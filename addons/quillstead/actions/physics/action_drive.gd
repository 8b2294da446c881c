extends SCDriveAction
## Drive a car, a kart, a boat or a tank with the keys or a gamepad. A VehicleBody3D is driven by its wheels, a
## character body the arcade way. It moves the body by itself and never holds a state up.
