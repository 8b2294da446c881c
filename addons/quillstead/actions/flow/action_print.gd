extends SCPrintAction
## Print a line to the Output panel.
