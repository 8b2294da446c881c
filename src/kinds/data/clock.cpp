#include "kinds/data/clock.hpp"

#include "action/words.hpp"

void SCFormatTimeAction::describe(KindTable<Self> &kind) {
	kind.about("data", "format_time",
			"Write a number of seconds the way a clock shows it, into a String variable, such as 1:03.4 for a stage time, 0:58.90 for a lap, 12:05 for a round "
			"timer or +0.6 for a gap.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Style>();
	kind.setting<&Self::seconds_variable>("seconds_variable", "The variable that holds the time, in seconds.");
	kind.setting<&Self::style>("style",
			"How it is written. 63.456 seconds are 1:03 with Minutes Seconds, 1:03.4 with Minutes Tenths, 1:03.45 with Minutes Hundredths, 63.4 with Seconds "
			"Tenths, 63.45 with Seconds Hundredths, and 0:01:03 with Hours Minutes Seconds. It never shows more time than has passed.");
	kind.setting<&Self::with_sign>(
			"with_sign", "Put a + or a - in front, for how far ahead or behind somebody is. Without it a time below zero reads like one above.");
	kind.setting<&Self::store_in>("store_in", "The String variable the text goes into, for a label to show.");
}

String SCFormatTimeAction::summary_default() {
	return vformat("Write %s as a clock into %s", words::picked(seconds_variable), store_in);
}
