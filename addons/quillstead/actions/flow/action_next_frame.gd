extends SCNextFrameEventAction
## Send an event on the next frame.
