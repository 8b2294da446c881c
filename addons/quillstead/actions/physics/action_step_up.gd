extends SCStepUpAction
## Let a walking character climb a step that would otherwise stop it dead. Put it above the Move Character of the
## state: it lifts the body and Move Character walks it on.
