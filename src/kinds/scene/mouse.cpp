#include "kinds/scene/mouse.hpp"

#include "action/words.hpp"

void SCSetMouseModeAction::describe(KindTable<Self> &kind) {
	kind.about("scene", "set_mouse_mode", "Show, hide or capture the mouse, and change the pointer's picture.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Mode>();
	kind.constants_of<Pointer>();
	kind.constants_of<Shape>();
	kind.setting<&Self::mode>("mode",
			"Visible shows the pointer, for menus. Hidden takes it away while it goes on moving. Captured takes it away and holds it in the game, for looking "
			"around with the mouse. Confined keeps it inside the window, and Confined Hidden does so out of sight. As It Is changes only the picture.");
	kind.setting<&Self::pointer>("pointer", "Whether the pointer gets a picture of the game's, or the computer's usual one back.");
	kind.setting<&Self::picture>("picture", "What the pointer looks like. At most 256 by 256 pixels; on the web, 128 by 128.")
			.only_if<&Self::pointer, A_PICTURE>();
	kind.setting<&Self::hotspot>(
				"hotspot", "The spot of the picture that points, in pixels from its top left corner: the tip of an arrow, the middle of a crosshair.")
			.only_if<&Self::pointer, A_PICTURE>();
	kind.setting<&Self::shape>("shape",
				"Which of the pointers it is. Arrow is the one mostly seen; Text is shown over text boxes, and Pointing Hand over links and what else asks for "
				"it.")
			.unless<&Self::pointer, POINTER_AS_IT_IS>();
	kind.setting<&Self::put_back_when_left>(
			"put_back_when_left", "Put the mouse back as it was when the state is left. A picture gives way to the usual pointer then.");
}

String SCSetMouseModeAction::summary_default() {
	const char *modes[] = { "Show the mouse", "Hide the mouse", "Capture the mouse", "Keep the mouse in the window", "Keep the mouse in the window, hidden",
		"Leave the mouse as it is" };
	String line = modes[CLAMP(int(mode), 0, int(AS_IT_IS))];
	if (pointer == A_PICTURE) {
		line += vformat(", with %s for a pointer", picture.is_null() ? String("(pick one)") : words::text_of(picture));
	} else if (pointer == THE_USUAL_ONE) {
		line += ", with the usual pointer";
	}
	return put_back_when_left ? line + String(" while the state runs") : line;
}
