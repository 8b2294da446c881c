#include "kinds/input/inputs.hpp"

#include "action/input_words.hpp"
#include "action/shared_verbs.hpp"

#include <godot_cpp/classes/area2d.hpp>
#include <godot_cpp/classes/area3d.hpp>
#include <godot_cpp/classes/character_body2d.hpp>
#include <godot_cpp/classes/character_body3d.hpp>
#include <godot_cpp/classes/scene_tree.hpp>

namespace {

constexpr char PLAYER_GROUP[] = "player";

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

void SCEventOnInputAction::describe(KindTable<Self> &kind) {
	kind.about("input", "event_on_input",
			"Send an event when a key, a mouse button or a gamepad input is pressed, released, held, tapped twice quickly, or held for a time.");
	kind.constants_of<When>();
	kind.setting<&Self::input_action>(
			"input_action", hint::INPUT, "What to watch: a key, a button, a gamepad input, an input action, or \"Any Key or Button\".");
	kind.setting<&Self::when>("when",
			"When to send. Pressed sends on every frame while it is down. Just Pressed and Just Released send once, and one press is never used again by the "
			"state it leads to.");
	kind.setting<&Self::seconds>("seconds", hint::SECONDS, "For Double Tapped, the most time between the two presses. For Held For, how long it must be held.")
			.only_if<&Self::when, DOUBLE_TAPPED, HELD_FOR>();
	kind.setting<&Self::only_while_inside>("only_while_inside",
			"Only while the player stands inside this area, such as the space in front of a door. The player is whoever is in the group \"player\", or any "
			"character in a game without that group. Empty counts the press anywhere.");
	kind.setting<&Self::event_name>("event_name", "The event sent.");
	kind.setting<&Self::data>("data", "Value carried with the event.");
	kind.setting<&Self::store_held_seconds_in>("store_held_seconds_in",
				"Keep how long it has been held in this variable. It counts up while it is down and is kept when let go, so a bow can shoot as far as it was "
				"drawn.")
			.optional();
	kind.warns<&Self::warn_input>("_warn_input", "m", "index");
	kind.warns<&Self::inside_check>("_inside_check", "m", "index");
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

String SCEventOnInputAction::holds_its_state_default() {
	return "It listens for as long as the state runs. Move on with the event that it sends, or put it on the state above";
}

void SCEventOnInputAction::warn_input(SCMachineBase *machine, int index) {
	(void)index;
	if (input_action.is_empty()) {
		verbs::warn(machine, this, "it has no input to watch, so it sends nothing. Pick one under Input Action.");
	} else if (input_words::action_for(input_action).is_empty()) {
		verbs::warn(machine, this,
				vformat("nothing is called \"%s\", so it sends nothing. Pick an input under Input Action, or add it to the Input Map.", input_action));
	} else {
		verbs::warn(machine, this, vformat("it watches %s and has nothing to send. Type an event under Event Name.", input_action));
	}
}

bool SCEventOnInputAction::inside_check(SCMachineBase *machine, int index) {
	(void)index;
	const Node *node = verbs::node_or_warn<&Self::only_while_inside>(machine, this);
	const Area2D *node_2d = Object::cast_to<Area2D>(node);
	const Area3D *node_3d = Object::cast_to<Area3D>(node);
	if (node_2d == nullptr && node_3d == nullptr) {
		if (node != nullptr) {
			verbs::warn_wrong_class(machine, this, node, "an Area2D or an Area3D", verbs::name_of<&Self::only_while_inside>());
		}
		return false;
	}
	if (node_2d != nullptr ? !watches(node_2d) : !watches(node_3d)) {
		verbs::warn(machine, this, vformat("%s does not watch what is inside it, so no press counts. Turn its Monitoring on.", node->get_name()));
		return false;
	}
	return node_2d != nullptr ? holds_a_player(node_2d) : holds_a_player(node_3d);
}

void SCGetInputVectorAction::describe(KindTable<Self> &kind) {
	kind.about("input", "input_axis", "Put the direction the player is holding into a variable, from the arrow keys, WASD or a stick.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::left_action>("left_action", hint::INPUT, "The input for left: a key, a stick push or an input action.").optional();
	kind.setting<&Self::right_action>("right_action", hint::INPUT, "The input for right.").optional();
	kind.setting<&Self::up_action>("up_action", hint::INPUT, "The input for up, or forward.").optional();
	kind.setting<&Self::down_action>("down_action", hint::INPUT, "The input for down, or back.").optional();
	kind.setting<&Self::store_in>("store_in",
			"The variable the direction goes into: a Vector2 of length 0 to 1, with x to the right and y down. A variable that holds a Vector3 gets it along "
			"the ground, as x and z.");
	kind.setting<&Self::store_strength_in>("store_strength_in", "The variable for how far it is pushed, from 0 to 1.").optional();
	kind.setting<&Self::keep_last_direction>(
			"keep_last_direction", "When nothing is held, leave the last direction in the variable, so a character goes on facing where it went.");
	kind.warns<&Self::warn_no_directions>("_warn_no_directions", "m", "index");
	kind.warns<&Self::warn_nowhere_to_store>("_warn_nowhere_to_store", "m", "index");
}

String SCGetInputVectorAction::summary_default() {
	const String kept = keep_last_direction ? " and keep the last" : "";
	if (store_in.is_empty() && !store_strength_in.is_empty()) {
		return vformat("Put how far a direction is held into %s", store_strength_in);
	}
	const String strength = store_strength_in.is_empty() ? String() : vformat(", how far into %s", store_strength_in);
	return vformat("Put the direction held into %s%s%s", store_in, kept, strength);
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
