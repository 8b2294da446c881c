extends SCTimeoutCondition
## True once the state has been running for this long.
