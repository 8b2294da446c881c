extends SCRunTemplateAction
## Run another template inside this state, on the same node, for as long as the state runs.
