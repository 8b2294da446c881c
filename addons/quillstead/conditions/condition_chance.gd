extends SCChanceCondition
## A roll of the dice that is true on a percentage of the times it is asked.
