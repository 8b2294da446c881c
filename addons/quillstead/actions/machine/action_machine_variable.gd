extends SCMachineVariableAction
## Read or write a variable on another machine.
