extends SCDashAction
## Send a character shooting off in one direction for a moment, as in a dodge roll out of the way of a swing, a dart
## across a gap or an air dash to reach a ledge that is one jump too far. It moves the body itself and holds the
## state up meanwhile, so it wants a state of its own, without a Move Character above it.
