extends SCSwitchAction
## Send one of several events, picked by what a variable holds.
