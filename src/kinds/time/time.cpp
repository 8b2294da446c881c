#include "kinds/time/time.hpp"

#include "action/words.hpp"

void SCGetTimeAction::describe(KindTable<Self> &kind) {
	kind.about("time", "get_time",
			"Put a time into a variable. How long the state has run, how long the game has, or what the player's clock and calendar say, for a shop that is "
			"closed at night or a gift on New Year's Day.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Which>();
	kind.setting<&Self::which>("which",
			"Which time. Since The State Began counts game time, which stands still while the game is paused; Since The Game Started counts real seconds. "
			"Seconds Of The Day go from 0 at midnight to 86400. Weekday is 0 on Sunday and 6 on Saturday. As text, a clock reads 14:05:09 and a date "
			"2026-03-31.");
	kind.setting<&Self::utc>("utc",
				"Take the time of day that is the same all over the world (UTC), for something that begins everywhere at once. Off is the player's own time.")
			.unless<&Self::which, SINCE_THE_STATE_BEGAN, SINCE_THE_GAME_STARTED, SECONDS_SINCE_1970>();
	kind.setting<&Self::store_in>("store_in", "The variable the time goes into.");
}

String SCGetTimeAction::summary_default() {
	const char *times[] = { "seconds since the state began", "seconds since the game started", "seconds of the day", "hour", "minute", "second",
		"day of the month", "month", "year", "weekday", "seconds since 1970", "clock", "date" };
	return vformat("Put the %s into %s", times[CLAMP(int(which), 0, int(DATE_AS_TEXT))], store_in);
}

void SCSetTimeScaleAction::describe(KindTable<Self> &kind) {
	kind.about("time", "set_time_scale",
			"Speed the game up or slow it down, for a hit stop, a slow-motion finish or a pause. It goes for the whole game, and stays until another Set Time "
			"Scale changes it, unless Lasts or Put Back When Left says otherwise.");
	kind.runs_for_a_while<&Self::duration, &Self::lasts>();
	kind.setting<&Self::scale>("scale", { PROPERTY_HINT_RANGE, "0,4,0.01,or_greater" },
			"How fast the game runs. 1 is the usual speed, 0.5 half as fast, 2 twice as fast, and 0 stands still.");
	kind.setting<&Self::duration>("duration", hint::SECONDS, "Real seconds it takes to get to that speed, little by little. Zero changes it at once.");
	kind.setting<&Self::lasts>("lasts", hint::SECONDS,
			"Real seconds it then stays like that; after them the speed is put back and the action finishes. 0.08 makes a good hit stop. Zero leaves it so.");
	kind.setting<&Self::put_back_when_left>("put_back_when_left", "Put the speed back when the state is left. One that Lasts is put back then in any case.")
			.unless<&Self::lasts>();
}

String SCSetTimeScaleAction::summary_default() {
	const String eased = duration > 0.0 ? vformat(" over %s s", words::number(duration)) : String();
	const String held = lasts > 0.0 ? vformat(" for %s s", words::number(lasts)) : (put_back_when_left ? String(" while the state runs") : String());
	return vformat("Run the game at %s times its speed%s%s", words::number(scale), eased, held);
}
