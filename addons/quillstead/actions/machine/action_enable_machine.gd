extends SCEnableMachineAction
## Switch another machine on or off, to stop a patrol while a cutscene plays or wake a trap when a lever is pulled.
