#include "kinds/scene/quitting.hpp"

void SCQuitGameAction::describe(KindTable<Self> &kind) {
	kind.about("scene", "quit_game",
			"Close the game. What is left of this frame is still played, and every state that is on is left as it would be at any other time. A game in a "
			"browser and an app on an iPhone are closed by the player alone: there this does nothing but send Failed Event.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.setting<&Self::tell_everybody_first>("tell_everybody_first",
			"Let the whole game know before, as a click on the cross of its window does, so that there is a chance to save: machines get the event "
			"close_requested, and scripts NOTIFICATION_WM_CLOSE_REQUEST. Untick it where that opens a box asking whether to quit, and this is its Yes.");
	kind.setting<&Self::exit_code>("exit_code", { PROPERTY_HINT_RANGE, "0,125,1,or_greater,hide_slider" },
			"The number that whoever started the game from a script or a launcher gets to see, at most 255. 0 means that all went well.");
	kind.setting<&Self::failed_event>("failed_event", "Sent where a game cannot close itself. It carries the reason. Empty sends nothing.").optional();
}

String SCQuitGameAction::summary_default() {
	return exit_code == 0 ? String("Close the game") : vformat("Close the game with code %d", exit_code);
}
