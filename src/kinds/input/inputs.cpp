#include "kinds/input/inputs.hpp"

#include "action/input_words.hpp"
#include "action/shared_verbs.hpp"
#include "settings/plumbing.hpp"

#include <godot_cpp/classes/area2d.hpp>
#include <godot_cpp/classes/area3d.hpp>
#include <godot_cpp/classes/character_body2d.hpp>
#include <godot_cpp/classes/character_body3d.hpp>
#include <godot_cpp/classes/scene_tree.hpp>

namespace {

constexpr char PLAYER_GROUP[] = "player";

TypedArray<StringName> names_of(std::initializer_list<const char *> settings) {
	TypedArray<StringName> names;
	for (const char *setting : settings) {
		names.push_back(StringName(setting));
	}
	return names;
}

// In a game that has no group of players a character is one.
bool is_player(const Node *body, bool players_are_grouped) {
	if (players_are_grouped) {
		return body->is_in_group(PLAYER_GROUP);
	}
	return Object::cast_to<CharacterBody2D>(body) != nullptr || Object::cast_to<CharacterBody3D>(body) != nullptr;
}

template <class Area>
bool holds_a_player(const Area *area) {
	const bool players_are_grouped = area->get_tree()->has_group(PLAYER_GROUP);
	const Array bodies = area->get_overlapping_bodies();
	for (int64_t i = 0; i < bodies.size(); i++) {
		const Node *body = Object::cast_to<Node>(bodies[i].get_validated_object());
		if (body != nullptr && is_player(body, players_are_grouped)) {
			return true;
		}
	}
	return false;
}

template <class Area>
bool watches(const Area *area) {
	return area->is_inside_tree() && area->is_monitoring();
}

} // namespace

void SCEventOnInputAction::describe(KindTable<SCEventOnInputAction> &kind) {
	kind.about("input", "event_on_input", "Send an event when a key, a mouse button or a gamepad input is pressed, released, held, tapped twice quickly, or held for a time.");
	kind.constants_of<When>();
	kind.setting<&SCEventOnInputAction::input_action>("input_action", hint::INPUT, "What to watch: a key, a button, a gamepad input, an input action, or \"Any Key or Button\".");
	kind.setting<&SCEventOnInputAction::when>("when", "When to send. Pressed sends on every frame while it is down. Just Pressed and Just Released send once, and one press is never used again by the state it leads to.").relists();
	kind.setting<&SCEventOnInputAction::seconds>("seconds", hint::SECONDS, "For Double Tapped, the most time between the two presses. For Held For, how long it must be held.");
	kind.setting<&SCEventOnInputAction::only_while_inside>("only_while_inside", "Only while the player stands inside this area, such as the space in front of a door. The player is whoever is in the group \"player\", or any character in a game without that group. Empty counts the press anywhere.");
	kind.setting<&SCEventOnInputAction::event_name>("event_name", "The event sent.");
	kind.setting<&SCEventOnInputAction::data>("data", "Value carried with the event.");
	kind.setting<&SCEventOnInputAction::store_held_seconds_in>("store_held_seconds_in", "Keep how long it has been held in this variable. It counts up while it is down and is kept when let go, so a bow can shoot as far as it was drawn.");
	ClassDB::bind_method(D_METHOD("_warn_input", "m", "index"), &SCEventOnInputAction::warn_input);
	ClassDB::bind_method(D_METHOD("_inside_check", "m", "index"), &SCEventOnInputAction::inside_check);
}

String SCEventOnInputAction::summary_default() {
	String happens;
	switch (when) {
		case JUST_PRESSED:
			happens = "is pressed";
			break;
		case JUST_RELEASED:
			happens = "is let go";
			break;
		case PRESSED:
			happens = "is down";
			break;
		case DOUBLE_TAPPED:
			happens = vformat("is tapped twice within %s s", words::number(seconds));
			break;
		case HELD_FOR:
			happens = vformat("is held for %s s", words::number(seconds));
			break;
	}
	const String inside = only_while_inside.is_empty() ? String() : vformat(" inside %s", words::name_in_line(only_while_inside));
	String does;
	if (!event_name.is_empty() || store_held_seconds_in.is_empty()) {
		const String carrying = data.get_type() == Variant::NIL ? String() : vformat(" with %s", words::text_of(data));
		does = vformat(", send %s%s", event_name, carrying);
	}
	if (!store_held_seconds_in.is_empty()) {
		does += vformat(", keep how long in %s", store_held_seconds_in);
	}
	return vformat("When %s %s%s%s", input_action, happens, inside, does);
}

TypedArray<StringName> SCEventOnInputAction::optional_names_default() {
	return names_of({ "store_held_seconds_in" });
}

void SCEventOnInputAction::warn_input(SCMachineBase *machine, int index) {
	(void)index;
	if (input_action.is_empty()) {
		verbs::warn(machine, this, "it has no input to watch, so it sends nothing. Pick one under Input Action.");
	} else if (input_words::action_for(input_action).is_empty()) {
		verbs::warn(machine, this, vformat("nothing is called \"%s\", so it sends nothing. Pick an input under Input Action, or add it to the Input Map.", input_action));
	} else {
		verbs::warn(machine, this, vformat("it watches %s and has nothing to send. Type an event under Event Name.", input_action));
	}
}

bool SCEventOnInputAction::inside_check(SCMachineBase *machine, int index) {
	(void)index;
	const StringName setting = "only_while_inside";
	const Node *node = verbs::node_or_warn(machine, this, only_while_inside, setting);
	const Area2D *flat = Object::cast_to<Area2D>(node);
	const Area3D *deep = Object::cast_to<Area3D>(node);
	if (flat == nullptr && deep == nullptr) {
		if (node != nullptr) {
			verbs::warn_wrong_class(machine, this, node, "an Area2D or an Area3D", setting);
		}
		return false;
	}
	if (flat != nullptr ? !watches(flat) : !watches(deep)) {
		verbs::warn(machine, this, vformat("%s does not watch what is inside it, so no press counts. Turn its Monitoring on.", node->get_name()));
		return false;
	}
	return flat != nullptr ? holds_a_player(flat) : holds_a_player(deep);
}

void SCEventOnInputAction::_validate_property(PropertyInfo &property) const {
	if (property.name == StringName("seconds") && when != DOUBLE_TAPPED && when != HELD_FOR) {
		hide_from_inspector(property);
	}
}

void SCEventOnSignalAction::describe(KindTable<SCEventOnSignalAction> &kind) {
	kind.about("input", "event_on_signal", "Listen to any node's signal while this state runs and send an event when it fires, such as a button pressed, a body entering an area or a timer finishing.");
	kind.setting<&SCEventOnSignalAction::node_path>("node_path", "Node whose signal to listen to. Empty is Self, the node this Machine works on.");
	kind.setting<&SCEventOnSignalAction::signal_name>("signal_name", "The signal's name, such as pressed, body_entered or timeout.");
	kind.setting<&SCEventOnSignalAction::event_name>("event_name", "Event sent. It carries the thing picked below. Empty sends none, for a signal only kept in a variable below.");
	kind.setting<&SCEventOnSignalAction::store_argument_in>("store_argument_in", "Store what the signal hands over in this variable, such as the body that entered.").relists();
	kind.setting<&SCEventOnSignalAction::argument>("argument", { PROPERTY_HINT_RANGE, "0,8,1,or_greater" }, "Which of the things handed over, where 1 is the first.");
	ClassDB::bind_method(D_METHOD("_warn_signal", "m", "index", "what", "node"), &SCEventOnSignalAction::warn_signal);
}

String SCEventOnSignalAction::summary_default() {
	String does;
	if (!event_name.is_empty() || store_argument_in.is_empty()) {
		does = vformat(", send %s", event_name);
	}
	if (!store_argument_in.is_empty()) {
		does += vformat(", keep what it hands over in %s", store_argument_in);
	}
	return vformat("When %s signals %s%s", words::name_in_line(node_path), signal_name, does);
}

TypedArray<StringName> SCEventOnSignalAction::optional_names_default() {
	return store_argument_in.is_empty() ? names_of({ "store_argument_in" }) : names_of({ "event_name" });
}

void SCEventOnSignalAction::warn_signal(SCMachineBase *machine, int index, int what, Node *node) {
	(void)index;
	if (what == NO_NODE || node == nullptr) {
		verbs::node_or_warn(machine, this, node_path, "node_path");
	} else if (signal_name.is_empty()) {
		verbs::warn(machine, this, vformat("it has no signal of %s to listen to. Type one under Signal Name.", node->get_name()));
	} else {
		verbs::warn(machine, this, vformat("%s is a %s, which has no signal called %s, so nothing is heard. Type one that it has under Signal Name.", node->get_name(), node->get_class(), signal_name));
	}
}

void SCEventOnSignalAction::_validate_property(PropertyInfo &property) const {
	if (property.name == StringName("argument") && store_argument_in.is_empty() && event_name.is_empty()) {
		hide_from_inspector(property);
	}
}

void SCGetInputVectorAction::describe(KindTable<SCGetInputVectorAction> &kind) {
	kind.about("input", "input_axis", "Put the direction the player is holding into a variable, from the arrow keys, WASD or a stick.");
	kind.setting<&SCGetInputVectorAction::left_action>("left_action", hint::INPUT, "The input for left: a key, a stick push or an input action.");
	kind.setting<&SCGetInputVectorAction::right_action>("right_action", hint::INPUT, "The input for right.");
	kind.setting<&SCGetInputVectorAction::up_action>("up_action", hint::INPUT, "The input for up, or forward.");
	kind.setting<&SCGetInputVectorAction::down_action>("down_action", hint::INPUT, "The input for down, or back.");
	kind.setting<&SCGetInputVectorAction::store_in>("store_in", "The variable the direction goes into: a Vector2 of length 0 to 1, with x to the right and y down. A variable that holds a Vector3 gets it along the ground, as x and z.");
	kind.setting<&SCGetInputVectorAction::store_strength_in>("store_strength_in", "The variable for how far it is pushed, from 0 to 1.");
	kind.setting<&SCGetInputVectorAction::keep_last_direction>("keep_last_direction", "When nothing is held, leave the last direction in the variable, so a character goes on facing where it went.");
	ClassDB::bind_method(D_METHOD("_warn_no_directions", "m", "index"), &SCGetInputVectorAction::warn_no_directions);
	ClassDB::bind_method(D_METHOD("_warn_nowhere_to_store", "m", "index"), &SCGetInputVectorAction::warn_nowhere_to_store);
}

String SCGetInputVectorAction::summary_default() {
	const String kept = keep_last_direction ? " and keep the last" : "";
	if (store_in.is_empty() && !store_strength_in.is_empty()) {
		return vformat("Put how far a direction is held into %s", store_strength_in);
	}
	const String strength = store_strength_in.is_empty() ? String() : vformat(", how far into %s", store_strength_in);
	return vformat("Put the direction held into %s%s%s", store_in, kept, strength);
}

TypedArray<StringName> SCGetInputVectorAction::optional_names_default() {
	return names_of({ "left_action", "right_action", "up_action", "down_action", "store_strength_in" });
}

void SCGetInputVectorAction::warn_no_directions(SCMachineBase *machine, int index) {
	(void)index;
	bool any = false;
	for (const StringName &input : { left_action, right_action, up_action, down_action }) {
		any = any || !input.is_empty();
		if (!input.is_empty() && input_words::action_for(input).is_empty()) {
			verbs::warn(machine, this, vformat("nothing is called \"%s\", so that direction is never held. Pick an input, or add it to the Input Map.", input));
		}
	}
	if (any) {
		return;
	}
	verbs::warn(machine, this, "it has no inputs to read, so the direction stays zero. Pick some under Left Action, Right Action, Up Action and Down Action.");
}

void SCGetInputVectorAction::warn_nowhere_to_store(SCMachineBase *machine, int index) {
	(void)index;
	verbs::warn(machine, this, "it has no variable for the direction, so it read nothing. Pick one under Store In.");
}
