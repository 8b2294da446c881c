extends SCStartDialogueAction
## Play a dialogue in a Dialogue Box. Its state is finished when the last line has been said.
