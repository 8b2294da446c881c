extends SCSearchLastKnownAction
## Go and look where it last saw the thing it was chasing. It walks to the place that its Perception node remembers,
## looks about there, and gives up. One that is stuck on the way looks about where it stands.
