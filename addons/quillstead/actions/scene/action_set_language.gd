extends SCSetLanguageAction
## Change the language the game is shown in, from the translations the project has, or step on to the next one, as a
## language button in an Options menu does. Words that are on the screen change by themselves.
