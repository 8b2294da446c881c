#include "kinds/scene/system.hpp"

#include "action/words.hpp"

void SCSystemAction::describe(KindTable<Self> &kind) {
	kind.about("scene", "system",
			"The things a game asks of the computer or phone it runs on: open a web page, copy and paste, keep the screen on, and what kind of computer it "
			"is.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<What>();
	kind.setting<&Self::what>("what",
			"The first eight do something. The others find something out and keep it in a variable. Memory Left is in megabytes. Safe Area is the part of what "
			"the game draws on that no notch or rounded corner of a phone covers, as a Rect2.");
	kind.setting<&Self::address>("address",
				"What is opened in the player's browser, such as https://example.com/help. One that begins with mailto: opens a letter. A variable's name in "
				"braces is replaced by its value.")
			.only_if<&Self::what, OPEN_A_WEB_PAGE>();
	kind.setting<&Self::any_address>("any_address",
				"Open anything that the computer knows how to open, such as a file or another program's steam:// address, and not only http, https and mailto. "
				"Leave it off when a player or somebody on the internet has a say in the address.")
			.only_if<&Self::what, OPEN_A_WEB_PAGE>();
	kind.setting<&Self::folder>(
				"folder", "The folder that is shown in the file manager: user://, where saves are kept, or one in it, such as user://screenshots.")
			.only_if<&Self::what, OPEN_THE_SAVE_FOLDER>();
	kind.setting<&Self::text>("text", hint::MULTILINE,
				"What is put on the clipboard, from where the player pastes it into any program. A variable's name in braces is replaced by its value.")
			.only_if<&Self::what, COPY_A_TEXT>();
	kind.setting<&Self::on>("on", "Keep the screen on though nobody touches anything, as in a film. Off lets it dim as the player has set it.")
			.only_if<&Self::what, KEEP_THE_SCREEN_ON>();
	kind.setting<&Self::seconds>("seconds", hint::SECONDS, "How long the phone vibrates.").only_if<&Self::what, VIBRATE_THE_PHONE>();
	kind.setting<&Self::strength>(
				"strength", { PROPERTY_HINT_RANGE, "-1,1,0.01" }, "How strongly, from 0 to 1. Below 0 it is as strong as the phone does it by itself.")
			.only_if<&Self::what, VIBRATE_THE_PHONE>();
	kind.setting<&Self::permission>("permission",
				"What the player is asked to allow, by its name in the export's settings, where it has to be ticked as well. Where nothing needs to be asked, "
				"as "
				"on a computer, the answer is yes at once.")
			.only_if<&Self::what, ASK_FOR_A_PERMISSION>();
	kind.setting<&Self::feature>("feature",
				"The name of a feature of the export, such as mobile, web, windows, linux, macos, android, demo or one of your own from the export's settings.")
			.only_if<&Self::what, FEATURE>();
	kind.setting<&Self::store_in>("store_in", "The variable that it goes into.").only_if<&Self::stores_by_choice>().optional_if<&Self::tells_yes_or_no>();
	kind.setting<&Self::store_name_in>("store_name_in", "Keep its name in English in this variable: German for de, Austria for AT.")
			.only_if<&Self::what, LANGUAGE, COUNTRY>()
			.optional();
	kind.setting<&Self::yes_event>("yes_event", "Sent when it is so. Empty sends nothing.").only_if<&Self::tells_yes_or_no>().optional();
	kind.setting<&Self::no_event>("no_event", "Sent when it is not. Empty sends nothing.").only_if<&Self::tells_yes_or_no>().optional();
	kind.setting<&Self::done_event>("done_event", "Sent when it has been done or found out. It carries what was found out. Empty sends nothing.").optional();
	kind.setting<&Self::failed_event>("failed_event", "Sent where this computer or phone has no such thing. It carries the reason. Empty sends nothing.")
			.optional();
}

bool SCSystemAction::tells_yes_or_no() const {
	return what == ASK_FOR_A_PERMISSION || (what >= DARK_MODE && what <= FEATURE);
}

bool SCSystemAction::tells_something() const {
	return what >= SYSTEM_NAME && what <= FEATURE;
}

bool SCSystemAction::stores_by_choice() const {
	return tells_something() || what == PASTE_A_TEXT || what == ASK_FOR_A_PERMISSION;
}

String SCSystemAction::summary_default() {
	const char *told[] = { "the system's name", "the system's version", "the device's model", "the device's id", "the number of processors", "the memory left",
		"the player's language", "the player's country", "the game's version", "the safe area", "whether dark mode is on", "whether there is a touchscreen",
		"whether this is a debug build" };
	switch (what) {
		case OPEN_A_WEB_PAGE:
			return vformat("Open %s", address.is_empty() ? String("(pick one)") : address);
		case OPEN_THE_SAVE_FOLDER:
			return vformat("Show %s in the file manager", folder);
		case COPY_A_TEXT:
			return vformat("Copy \"%s\"", text.replace("\n", " ").left(40));
		case PASTE_A_TEXT:
			return vformat("Paste a text into %s", words::picked(store_in));
		case KEEP_THE_SCREEN_ON:
			return on ? "Keep the screen on" : "Let the screen dim";
		case VIBRATE_THE_PHONE:
			return vformat("Vibrate the phone for %s s", words::number(seconds));
		case ASK_FOR_A_PERMISSION:
			return vformat("Ask for the permission %s", permission.get_extension());
		case ASK_FOR_ATTENTION:
			return "Ask for the player's attention";
		case FEATURE:
			return store_in.is_empty() ? vformat("Look whether there is %s", feature) : vformat("Put whether there is %s into %s", feature, store_in);
		default:
			break;
	}
	const String thing = told[CLAMP(int(what), int(SYSTEM_NAME), int(DEBUG_BUILD)) - int(SYSTEM_NAME)];
	if (store_in.is_empty() && tells_yes_or_no()) {
		return vformat("Look %s", thing);
	}
	return vformat("Put %s into %s", thing, words::picked(store_in));
}

// Which one it is may be read from a variable, and only the player's answer to a permission comes later.
bool SCSystemAction::finishes_as_it_starts_default() {
	return !repeats() && what != ASK_FOR_A_PERMISSION && is_typed_in(FieldOf<&Self::what>::row->info.name);
}

PackedStringArray SCSystemAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	const String filled_in = what == OPEN_A_WEB_PAGE ? address : what == COPY_A_TEXT ? text : String();
	names.append_array(words::names_in(filled_in));
	return names;
}
