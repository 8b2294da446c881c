extends SCCancelDelayedEventsAction
## Call off events this machine's Send Event actions are still waiting to send after a Delay.
