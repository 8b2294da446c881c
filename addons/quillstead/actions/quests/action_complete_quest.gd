extends SCCompleteQuestAction
## Mark a quest done now and give its reward, whatever its steps say. One that has not begun begins and is done in
## one go.
