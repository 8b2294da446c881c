extends SCHighScoreTableAction
## Keep a table of best scores in a variable, the way an arcade game shows its top ten, with each run's name and
## score, best first. Save Game keeps it like any other variable.
