extends SCShowChoicesAction
## Put a button on the screen for each answer the player can choose, and send the event that goes with the one
## picked, such as 'Help the stranger' or 'Walk on', 'Buy', 'Sell' or 'Leave'. Its state is finished when one has
## been picked.
