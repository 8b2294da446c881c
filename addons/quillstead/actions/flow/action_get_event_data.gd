extends SCGetEventDataAction
## Read the value an event arrived with.
