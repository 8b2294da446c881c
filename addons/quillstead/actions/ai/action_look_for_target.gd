extends SCLookForTargetAction
## Keep watch. The character's Perception node is set to look for a group, and what comes into its view, comes back
## into view or is given up sends an event, for as long as the state runs.
