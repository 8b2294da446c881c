extends Object
## Something that an action may rest on, and that may be gone before it rings.

@warning_ignore("unused_signal")
signal rung
