extends SCInteractionAction
## Use things by walking up to them and pressing a key, to open a chest, pull a lever, talk to a shopkeeper or read
## a sign.
