extends SCGoToStateAction
## Jump straight to another state, without waiting for a transition.
