extends SCForwardEventsAction
## While this state runs, pass the events this machine gets on to another machine as well.
