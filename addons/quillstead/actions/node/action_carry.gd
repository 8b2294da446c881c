extends SCCarryAction
## Pick something up and carry it, then put it down or throw it.
