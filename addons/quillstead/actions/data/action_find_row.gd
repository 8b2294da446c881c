extends SCFindRowAction
## Pick a row of a Data Table and keep it in a variable, for Get Data, Set Data and the Data check to read.
