extends SCFileExistsCondition
## Is there a file or a folder at a place on the computer?
