extends SCWaitAction
## Wait a number of seconds, then finish.
