extends SCSetMouseModeAction
## Show, hide or capture the mouse, and change the pointer's picture.
