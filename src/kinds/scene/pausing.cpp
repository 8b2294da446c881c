#include "kinds/scene/pausing.hpp"

void SCPauseGameAction::describe(KindTable<Self> &kind) {
	kind.about("scene", "pause_game",
			"Freeze the game, or let it run again. A node whose Process Mode is Always or When Paused goes on while the game is paused, with all below it: "
			"give "
			"that to the pause menu, and to the machine that lets the game run again.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<Mode>();
	kind.setting<&Self::mode>("mode", "Pause freezes the game, Resume lets it run again, and Toggle does whichever of these it is time for.");
	kind.setting<&Self::show_mouse>(
				"show_mouse", "Show the mouse while the game is paused, for a menu. A game that hid or captured it has it back that way when it runs again.")
			.only_if<&Self::may_pause>();
	kind.setting<&Self::paused_event>("paused_event", "Sent when the game has just been paused.").only_if<&Self::may_pause>().optional();
	kind.setting<&Self::resumed_event>("resumed_event", "Sent when the game has just been let run again.").only_if<&Self::may_resume>().optional();
}

String SCPauseGameAction::summary_default() {
	const char *lines[] = { "Pause the game", "Resume the game", "Pause or resume the game" };
	return lines[CLAMP(int(mode), 0, int(TOGGLE))];
}
