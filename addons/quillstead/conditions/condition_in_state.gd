extends SCInStateCondition
## Is a machine in a state?
