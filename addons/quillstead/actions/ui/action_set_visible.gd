extends SCSetVisibleAction
## Show or hide anything, such as a menu, a panel, a health bar or a sprite. With a fade it slides in or out and
## does not pop. A fade goes from how see-through it is now to how it was designed, so a panel made half see-through
## comes back half see-through. Starting a fade ends one still running on the same node, and showing something
## already shown or hiding something already hidden does nothing. Blink Every keeps it flashing for as long as the
## state runs, for an alarm light or a warning. The action then never finishes, the way one on Every Tick does not,
## and leaving the state puts it back as it was before.
