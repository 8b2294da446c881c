extends SCPointerOverUiCondition
## True while the mouse pointer, or a finger, is over something on the screen that takes clicks, such as a button, a
## slider, a text box, a panel or an open inventory.
