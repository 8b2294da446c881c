extends SCSwimAction
## Let a character move through water without falling through it. While it is in the water it weighs nothing and
## sinks or rises at a speed of its own; outside it falls as ever. It never holds a state up and stands beside the
## Move Character that does the moving.
