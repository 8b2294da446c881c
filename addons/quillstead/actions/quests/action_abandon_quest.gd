extends SCAbandonQuestAction
## The player gives a quest up, from a journal or by answering 'never mind'. Its steps stop counting, and its
## Abandoned Event is sent.
