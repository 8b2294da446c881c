#include "kinds/data/high_scores.hpp"

#include "action/words.hpp"

void SCHighScoreTableAction::describe(KindTable<Self> &kind) {
	kind.about("data", "score_table",
			"Keep a table of best scores in a variable, the way an arcade game shows its top ten, with each run's name and score, best first. Save Game keeps "
			"it like any other variable.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Operation>();
	kind.constants_of<Best>();
	kind.setting<&Self::table_variable>("table_variable", "The variable that holds the table. One that does not exist yet is made.")
			.written_if<&Self::operation, ENTER, CLEAR>();
	kind.setting<&Self::operation>("operation",
			"What to do. Enter puts the score in if it is good enough, Would Enter only finds out whether it is, before the player is asked for a name, Write "
			"Out makes a text of the table for a label, and Clear empties it.");
	kind.setting<&Self::best_is>("best_is", "Largest puts the highest score first, for points. Smallest puts the lowest first, for lap times.")
			.only_if<&Self::operation, ENTER, WOULD_ENTER>();
	kind.setting<&Self::keep>("keep", hint::HOW_MANY, "How many scores the table holds. The one that drops off the end is forgotten.")
			.only_if<&Self::operation, ENTER, WOULD_ENTER>();
	kind.setting<&Self::score>("score", "The score. Pick the variable beside it that counts it.").only_if<&Self::operation, ENTER, WOULD_ENTER>();
	kind.setting<&Self::player_name>("player_name", "Whose score it is. The same name may stand in the table any number of times.")
			.only_if<&Self::operation, ENTER>();
	kind.setting<&Self::store_place_in>(
				"store_place_in", "Keep the place it comes to in this variable, 1 for the first. It is 0 for a score that is not good enough.")
			.only_if<&Self::operation, ENTER, WOULD_ENTER>()
			.optional();
	kind.setting<&Self::made_it_event>("made_it_event", "Sent when the score is good enough for the table. It carries the place. Empty sends nothing.")
			.only_if<&Self::operation, ENTER, WOULD_ENTER>()
			.optional();
	kind.setting<&Self::missed_event>("missed_event", "Sent when the score is not good enough for the table. Empty sends nothing.")
			.only_if<&Self::operation, ENTER, WOULD_ENTER>()
			.optional();
	kind.setting<&Self::store_text_in>("store_text_in", "The String variable the written table goes into.").only_if<&Self::operation, WRITE_OUT>();
	kind.setting<&Self::line>("line",
				"How each line is written. {place}, {name} and {score} are filled in, and a form may follow a colon: {score:,} writes 12,500 and {score:time} "
				"1:05.")
			.only_if<&Self::operation, WRITE_OUT>();
	kind.setting<&Self::when_empty>("when_empty", "What is written when there are no scores yet.").only_if<&Self::operation, WRITE_OUT>();
}

String SCHighScoreTableAction::summary_default() {
	const String table = words::picked(table_variable);
	switch (operation) {
		case ENTER:
			return vformat("Enter %s for %s into %s", words::number(score), player_name.is_empty() ? String("no name") : player_name, table);
		case WOULD_ENTER:
			return vformat("Would %s get into %s?", words::number(score), table);
		case WRITE_OUT:
			return vformat("Write out %s into %s", table, store_text_in);
		case CLEAR:
			break;
	}
	return vformat("Empty %s", table);
}
