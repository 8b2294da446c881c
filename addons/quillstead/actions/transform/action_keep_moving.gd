extends SCTranslateAction
## Keep a node moving at a steady speed for as long as the state runs. A bullet, a cloud, a conveyor belt. It does
## not hold the state up: what else the state does decides when it is finished. It goes through walls; Move
## Character does not.
