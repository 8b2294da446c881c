extends SCIsChildOfCondition
## True when a node is somewhere under another node, as with a crate riding on the lift, a sword held in the hand, a
## card in the hand and not in the deck, or the body a bullet hit being part of the player.
