extends SCClampAction
## Keep a variable inside a range, and optionally send an event when it hits an end, such as a health bar that
## cannot go below zero or a score capped at a maximum.
