extends RandomNumberGenerator
## Draws what a random design is made of: the same for the same seed.


func one_in(chances: int) -> bool:
	return randi() % chances == 0


func pick(from: Array) -> Variant:
	return from[randi() % from.size()]
