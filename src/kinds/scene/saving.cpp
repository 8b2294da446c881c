#include "kinds/scene/saving.hpp"

#include "action/words.hpp"

namespace {

void add_names(PackedStringArray &names, const Array &more) {
	for (int64_t i = 0; i < more.size(); i++) {
		const String name = more[i];
		if (!name.is_empty() && !names.has(name)) {
			names.push_back(name);
		}
	}
}

} // namespace

void SCSaveGameAction::describe(KindTable<Self> &kind) {
	kind.about("scene", "save_game",
			"Keep some of the machine's variables between one run of the game and the next, such as a high score, which level was reached, or whether the "
			"tutorial has been seen. Or keep a whole scene as it stands, with everything in it.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<What>();
	kind.setting<&Self::what>("what",
			"Save writes variables into a file, and Load takes them from it again. Delete takes the file away, and Exists tells whether there is one, for a "
			"Continue button. Save The Scene and Load The Scene do the same for the scene that runs: what moved, what was made and what is gone, and where "
			"each machine stood.");
	kind.setting<&Self::slot>("slot",
				"The name of the save. A game with one for each player, or with several to choose from, gives each a name of its own, such as slot1 and slot2. "
				"The options fit well into one called options.")
			.unless<&Self::slot_variable>();
	kind.setting<&Self::slot_variable>("slot_variable", "Read the name of the save from this variable, such as the slot that was clicked.").optional();
	kind.setting<&Self::variables>("variables", { PROPERTY_HINT_TYPE_STRING, "21:" },
				"The variables to keep. Empty keeps all that the machine has, and all global ones. Nodes and resources are not kept.")
			.only_if<&Self::what, SAVE, LOAD>()
			.optional();
	kind.setting<&Self::store_worked_in>("store_worked_in", "Keep in this variable whether it worked, true or false.").optional();
	kind.setting<&Self::worked_event>("worked_event", "Sent when it worked, or when there is such a save.").optional();
	kind.setting<&Self::failed_event>(
				"failed_event", "Sent when there is no such save, when it is damaged, or when it could not be written. Nothing has changed then.")
			.optional();
}

String SCSaveGameAction::summary_default() {
	const String where = words::variable_or(slot_variable, words::picked(slot));
	const String kept = variables.is_empty() ? String("every variable") : words::listed(variables);
	switch (what) {
		case LOAD:
			return vformat("Load %s from %s", kept, where);
		case DELETE:
			return vformat("Delete %s", where);
		case EXISTS:
			return vformat("Is there a %s?", where);
		case SAVE_THE_SCENE:
			return vformat("Save the scene to %s", where);
		case LOAD_THE_SCENE:
			return vformat("Load the scene from %s", where);
		case SAVE:
			break;
	}
	return vformat("Save %s to %s", kept, where);
}

PackedStringArray SCSaveGameAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	if (what == SAVE) {
		add_names(names, variables);
	}
	return names;
}

PackedStringArray SCSaveGameAction::variables_written_default() {
	PackedStringArray names = SCMachineAction::variables_written_default();
	if (what == LOAD) {
		add_names(names, variables);
	}
	return names;
}
