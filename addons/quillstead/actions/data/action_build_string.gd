extends SCFormatStringAction
## Put text together into a variable, for a score line, a name or a message.
