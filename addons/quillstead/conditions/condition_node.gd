extends SCNodeCondition
## Ask about a node.
