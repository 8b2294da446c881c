extends SCCheckAction
## Ask one of QuillStead's questions here in the state instead of on a transition, and do something with the answer.
