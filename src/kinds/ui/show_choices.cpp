#include "kinds/ui/show_choices.hpp"

#include "action/action_shared.hpp"
#include "action/shared_verbs.hpp"
#include "action/told_path.hpp"
#include "action/words.hpp"

namespace {

void add_names_in(const String &line, PackedStringArray &names) {
	const PackedStringArray in_braces = words::names_in(line);
	for (int64_t i = 0; i < in_braces.size(); i++) {
		if (!names.has(in_braces[i])) {
			names.push_back(in_braces[i]);
		}
	}
}

} // namespace

void SCShowChoicesAction::describe(KindTable<Self> &kind) {
	kind.about("ui", "show_choices",
			"Put a button on the screen for each answer the player can choose, and send the event that goes with the one picked, such as 'Help the stranger' "
			"or 'Walk on', 'Buy', 'Sell' or 'Leave'. Its state is finished when one has been picked.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.setting<&Self::box_path>("box_path", "Where the buttons go: a VBoxContainer or an HBoxContainer. Empty is Self, the node this Machine works on.");
	kind.setting<&Self::choices>("choices", "The answers, one to a row. Write {name} anywhere to drop a variable's value in.").unless<&Self::list_variable>();
	kind.setting<&Self::events>("events", "The event each answer sends, in the same order. An empty row sends nothing.");
	kind.setting<&Self::list_variable>(
				"list_variable", "Take the answers from this Array variable, such as what a shop has to sell. The rows above are ignored then.")
			.optional();
	kind.setting<&Self::any_answer_event>(
				"any_answer_event", "The event sent whichever answer is picked, unless the answer's own event has moved the machine on already.")
			.optional();
	kind.setting<&Self::store_choice_in>("store_choice_in", "Keep the number of the answer in this variable, where 1 is the first.").optional();
	kind.setting<&Self::store_words_in>("store_words_in", "Keep the words of the answer in this variable.").optional();
	kind.setting<&Self::clear_the_box>("clear_the_box", "Take away the buttons that are in the box already. Other things in it stay.");
	kind.setting<&Self::row_button>("row_button", "The words of a small button at the end of each row, such as a question mark. Empty makes none.");
	kind.setting<&Self::row_button_event>("row_button_event",
				"The event a small button sends, in place of the answer's own. The number and the words of its row are kept as if the answer had been picked.")
			.only_if<&Self::row_button>()
			.optional();
	kind.warns<&Self::warn_choices>("_warn_choices", "m", "index", "what", "held");
}

String SCShowChoicesAction::summary_default() {
	if (!list_variable.is_empty()) {
		return vformat("Choose one of %s", list_variable);
	}
	PackedStringArray rows;
	for (int64_t i = 0; i < choices.size(); i++) {
		rows.push_back(choices[i]);
	}
	return vformat("Choose: %s", rows.is_empty() ? ActionShared::get().not_picked : String(", ").join(rows));
}

PackedStringArray SCShowChoicesAction::variables_read_default() {
	PackedStringArray names = SCMachineAction::variables_read_default();
	if (list_variable.is_empty()) {
		for (int64_t i = 0; i < choices.size(); i++) {
			add_names_in(choices[i], names);
		}
	}
	add_names_in(row_button, names);
	return names;
}

void SCShowChoicesAction::warn_choices(SCMachineBase *machine, int64_t, int64_t what, const Variant &held) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	switch (what) {
		case NO_BOX:
			verbs::warn_whole(machine, this, int(what),
					vformat("Show Choices on %s: there is no node at %s to put the answer buttons in, so none are shown. Pick a VBoxContainer or an "
							"HBoxContainer under Box.",
							name, words::told_path(box_path)));
			break;
		case NO_ANSWERS:
			verbs::warn_whole(machine, this, int(what),
					vformat("Show Choices on %s has no answers to offer, so no buttons are shown. Type them under Choices, or pick an Array variable under "
							"List Variable.",
							name));
			break;
		case NO_ARRAY:
			verbs::warn_whole(machine, this, int(what),
					vformat("Show Choices on %s: %s holds %s, not an Array, so no buttons are shown. Pick an Array variable under List Variable.", name,
							list_variable, values::kind_in_words(held)));
			break;
		default:
			break;
	}
}
