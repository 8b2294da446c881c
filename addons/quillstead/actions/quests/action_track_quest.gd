extends SCTrackQuestAction
## Track a quest, or stop tracking it. Tracked quests are those that a Quest Tracker shows. Every quest is tracked
## from the moment it begins, and it counts either way.
