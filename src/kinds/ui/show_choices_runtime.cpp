// The compiled runtime of Show Choices.

#include "action/action_shared.hpp"
#include "action/add_kind.hpp"
#include "action/input_words.hpp"
#include "action/native_calls.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "kinds/ui/show_choices.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/classes/base_button.hpp>
#include <godot_cpp/classes/button.hpp>
#include <godot_cpp/classes/h_box_container.hpp>
#include <godot_cpp/classes/v_box_container.hpp>

namespace {

using Kind = SCShowChoicesAction;

struct Names {
	// In the slot: the ids of the buttons.
	StringName buttons = "buttons";
	// On a row that holds an answer and its small button.
	StringName row = "quillstead_choice_row";
	StringName pressed = "pressed";
	StringName gui_input = "gui_input";
	StringName is_action = "is_action";
	StringName is_action_pressed = "is_action_pressed";
	StringName accept = "ui_accept";
	// The engine's own accept is on no gamepad.
	StringName pad = "Pad: Bottom Button (A / Cross)";
	StringName add_child = "add_child";
	StringName grab_focus = "grab_focus";
	StringName tr = "tr";
	String taken_away = "TakenAway";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// Its name is free for the next one at once, and whoever lays the box out leaves it out.
void take_away(Node *node) {
	const Weak<Node> kept(node);
	node->set_name(names().taken_away);
	if (Control *control = Object::cast_to<Control>(kept.get())) {
		control->set_visible(false);
	}
	if (Node *still = kept.get()) {
		still->queue_free();
	}
}

void take_away_by_ids(const PackedInt64Array &ids) {
	for (int64_t i = 0; i < ids.size(); i++) {
		Node *button = Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(ids[i])));
		if (button == nullptr) {
			continue;
		}
		Node *parent = button->get_parent();
		take_away(parent != nullptr && parent->has_meta(names().row) ? parent : button);
	}
}

void take_away_buttons(SCMachineBase *machine, int index) {
	Dictionary slot = machine->slot(index);
	const Variant ids = slot.get(names().buttons, Variant());
	if (ids.get_type() == Variant::PACKED_INT64_ARRAY) {
		slot.erase(names().buttons);
		take_away_by_ids(ids);
	}
}

// The machine may sit among the buttons, and stays.
void clear_box(Node *box, SCMachineBase *machine) {
	PackedInt64Array ids;
	for (int i = 0; i < box->get_child_count(); i++) {
		Node *child = box->get_child(i);
		const bool is_ours = Object::cast_to<BaseButton>(child) != nullptr || child->has_meta(names().row);
		if (is_ours && !child->is_queued_for_deletion() && !child->is_ancestor_of(machine)) {
			ids.push_back(int64_t(child->get_instance_id()));
		}
	}
	for (int64_t i = 0; i < ids.size(); i++) {
		if (Node *child = Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(ids[i])))) {
			take_away(child);
		}
	}
}

String filled_in(const String &text, SCMachineBase *machine) {
	// Without a value in it, a button translates its words itself, and again when the language is changed.
	return text.find("{") < 0 ? text : words::fill_in(machine->tr(text), machine);
}

// Items are shown as they are.
PackedStringArray words_of_items(const Array &items) {
	PackedStringArray shown;
	for (int64_t i = 0; i < items.size(); i++) {
		const Variant item = items[i];
		shown.push_back(item.get_type() == Variant::OBJECT ? words::text_of(item) : item.stringify());
	}
	return shown;
}

PackedStringArray words_of_rows(const TypedArray<String> &rows, SCMachineBase *machine) {
	PackedStringArray shown;
	for (int64_t i = 0; i < rows.size(); i++) {
		shown.push_back(filled_in(rows[i], machine));
	}
	return shown;
}

void hear_answer(SCMachineBase *machine, SCMachineAction *action, int index, const Array &handed_over);
void hear_row_button(SCMachineBase *machine, SCMachineAction *action, int index, const Array &handed_over);
void hear_input(SCMachineBase *machine, SCMachineAction *action, int index, const Array &handed_over);

// The buttons of one visit. Adding to the scene may run a game's code.
class Buttons {
	SCMachineBase *machine;
	SCMachineAction *action;
	int index;
	StillHere here;
	Weak<Node> box;
	bool wraps;
	PackedInt64Array ids;

public:
	Buttons(SCMachineBase *of_machine, SCMachineAction *of_action, int of_index, Node *in_box) :
			machine(of_machine), action(of_action), index(of_index), here(of_machine), box(in_box), wraps(Object::cast_to<VBoxContainer>(in_box) != nullptr) {}

	void add(const PackedStringArray &answers, const String &small_button) {
		for (int64_t i = 0; i < answers.size() && here && box.get() != nullptr; i++) {
			Button *button = memnew(Button);
			button->set_name(vformat("Choice%d", i));
			button->set_text(answers[i]);
			if (wraps) {
				button->set_autowrap_mode(TextServer::AUTOWRAP_WORD_SMART);
			}
			listen(button, ActionCall::make("Show Choices: picked", machine, action, index, hear_answer).bind(i));
			ids.push_back(int64_t(button->get_instance_id()));
			// Noted first, as whoever sees it come may leave the state.
			machine->slot(index)[names().buttons] = ids;
			put_in(small_button.is_empty() ? static_cast<Node *>(button) : row_of(button, i, small_button));
		}
		Object *first = !ids.is_empty() && here ? ObjectDB::get_instance(uint64_t(ids[0])) : nullptr;
		if (first != nullptr) {
			first->call_deferred(names().grab_focus);
		}
	}

private:
	void listen(Button *button, const Callable &when_pressed) {
		button->connect(names().pressed, when_pressed);
		const Callable heard = ActionCall::make("Show Choices: gamepad", machine, action, index, hear_input);
		button->connect(names().gui_input, heard.bind(int64_t(button->get_instance_id())));
	}

	// A box whose scene is just being set up takes no more children yet.
	void put_in(Node *node) {
		if (SCMachine::takes_children_now(box.get()) || !box.get()->is_inside_tree()) {
			box.get()->add_child(node);
		} else {
			box.get()->call_deferred(names().add_child, node);
		}
	}

	Node *row_of(Button *button, int64_t i, const String &small_button) {
		HBoxContainer *row = memnew(HBoxContainer);
		row->set_name(vformat("Choice%dRow", i));
		row->set_meta(names().row, true);
		button->set_h_size_flags(Control::SIZE_EXPAND_FILL);
		row->add_child(button);
		Button *beside = memnew(Button);
		beside->set_name("RowButton");
		beside->set_text(small_button);
		listen(beside, ActionCall::make("Show Choices: small button", machine, action, index, hear_row_button).bind(i));
		row->add_child(beside);
		return row;
	}
};

void pick(SCMachineBase *machine, SCMachineAction *action, int index, int64_t place, bool is_row_button) {
	const StillHere here(machine);
	const Variant held = machine->slot(index).get(names().buttons, Variant());
	const PackedInt64Array ids = held.get_type() == Variant::PACKED_INT64_ARRAY ? PackedInt64Array(held) : PackedInt64Array();
	if (place < 0 || place >= ids.size()) {
		return;
	}
	const Button *button = Object::cast_to<Button>(ObjectDB::get_instance(uint64_t(ids[place])));
	const String said = button != nullptr ? button->get_text() : String();
	const Callable finish = machine->finisher(index);
	take_away_buttons(machine, index);
	if (here) {
		verbs::keep_each<&Kind::store_choice_in, &Kind::store_words_in>(machine, action, { place + 1, said });
	}
	if (here && is_row_button) {
		verbs::send<&Kind::row_button_event>(machine, action);
	} else if (here) {
		const TypedArray<StringName> events = setting_of<&Kind::events>(action);
		verbs::send(machine, place < events.size() ? StringName(events[place]) : StringName());
		if (here) {
			verbs::send<&Kind::any_answer_event>(machine, action);
		}
	}
	if (here) {
		finish.call();
	}
}

void hear_answer(SCMachineBase *machine, SCMachineAction *action, int index, const Array &handed_over) {
	pick(machine, action, index, handed_over.is_empty() ? -1 : int64_t(handed_over[0]), false);
}

void hear_row_button(SCMachineBase *machine, SCMachineAction *action, int index, const Array &handed_over) {
	pick(machine, action, index, handed_over.is_empty() ? -1 : int64_t(handed_over[0]), true);
}

void hear_input(SCMachineBase *, SCMachineAction *, int, const Array &handed_over) {
	Object *event = handed_over.size() == 2 ? handed_over[0].get_validated_object() : nullptr;
	Button *button = event != nullptr ? Object::cast_to<Button>(ObjectDB::get_instance(uint64_t(int64_t(handed_over[1])))) : nullptr;
	const bool is_pad = button != nullptr && event->call(names().is_action_pressed, input_words::action_for(names().pad)).booleanize();
	if (is_pad && !event->call(names().is_action, names().accept).booleanize()) {
		button->accept_event();
		button->emit_signal(names().pressed);
	}
}

class ShowChoices : public SCNativeAction {
	// False when there is nothing to wait for.
	static bool begin(SCMachineBase *machine, SCMachineAction *action, int index, const StillHere &here) {
		const Weak<Node> box(values::node_of(machine, setting_of<&Kind::box_path>(action)));
		const StringName list = setting_of<&Kind::list_variable>(action);
		const Variant held = list.is_empty() ? Variant() : machine->get_value(list);
		const bool is_array = held.get_type() == Variant::ARRAY;
		const PackedStringArray answers = is_array ? words_of_items(held)
				: list.is_empty()				   ? words_of_rows(setting_of<&Kind::choices>(action), machine)
												   : PackedStringArray();
		const String small_button = filled_in(setting_of<&Kind::row_button>(action), machine);
		if (box.get() == nullptr) {
			verbs::say<&Kind::warn_choices>(action, machine, index, int64_t(Kind::NO_BOX), Variant());
			return false;
		}
		if (setting_of<&Kind::clear_the_box>(action)) {
			clear_box(box.get(), machine);
		}
		if (!here) {
			return false;
		}
		if (!list.is_empty() && !is_array) {
			verbs::say<&Kind::warn_choices>(action, machine, index, int64_t(Kind::NO_ARRAY), held);
			return false;
		}
		if (list.is_empty() && answers.is_empty()) {
			verbs::say<&Kind::warn_choices>(action, machine, index, int64_t(Kind::NO_ANSWERS), Variant());
			return false;
		}
		Node *there = box.get();
		if (answers.is_empty() || there == nullptr) {
			return false;
		}
		Buttons(machine, action, index, there).add(answers, small_button);
		return true;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		machine->slot(index).erase(names().buttons);
		if (!begin(machine, action, index, here) && here) {
			machine->finish(index);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override { take_away_buttons(machine, index); }
};

const AddKinds added = {
	add_kind<SCShowChoicesAction, ShowChoices>(),
};

} // namespace
