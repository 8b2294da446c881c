extends SCInstantiateAction
## Add a scene to the running game, such as an effect, a pickup, a bullet or an enemy.
