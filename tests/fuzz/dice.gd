extends RandomNumberGenerator
## Draws what the random players make and do: the same for the same seed.
## The names alone would mean the functions that all share.


func one_in(chances: int) -> bool:
	return self.randi() % chances == 0


func pick(from: Array) -> Variant:
	return from[self.randi() % from.size()]
