extends SCGetPropertyAction
## Read any property of any node into one of the machine's variables, such as a position, whether something is
## visible, or a setting of another plugin's node.
