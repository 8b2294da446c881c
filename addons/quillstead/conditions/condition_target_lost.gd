extends SCTargetLostCondition
## True when the character had something and cannot see it any more, and has not been able to for a moment. It stays
## true until something comes into view again.
