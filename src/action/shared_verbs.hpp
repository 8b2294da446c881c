#pragma once

// What runtimes of kinds do over and over: find the node a path setting leads to or tell the game maker,
// work once or every frame, keep an answer in a variable and send an event, move a property over time.
// With these most runtimes are a few lines of intent. Only for runtimes; nothing here is bound.

#include "action/kind_table.hpp"
#include "action/places.hpp"
#include "action/sc_native_actions.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/still_here.hpp"

#include <godot_cpp/classes/tween.hpp>

#include <initializer_list>

namespace verbs {

// A setting as the code names it.
template <auto Field>
const StringName &name_of() {
	return FieldOf<Field>::row->info.name;
}

// "Set Visible on Door: there is no node at ../Panel. Pick one under Node." The first word is what the
// kind is called in the palette, taken from its class. Said once for this action in this machine.
void warn(SCMachineBase *machine, const Object *kind, const String &what);
// A sentence of its own, once for each thing that can be wrong with the action, however the sentence comes out.
void warn_whole(SCMachineBase *machine, const Object *kind, int which, const String &sentence);
// The sentence that the kind bound with KindTable::warns(), which a script that extends it may have replaced.
template <auto Method, class... Arguments>
Variant say(SCMachineAction *action, SCMachineBase *machine, int index, const Arguments &...arguments) {
	return action->call(*WarningOf<Method>::name, machine, index, arguments...);
}
String kind_in_palette(const Object *kind);
// The setting's name as the inspector shows it: "body_path" reads "Body Path".
String setting_in_inspector(const StringName &setting);

// The node a path setting leads to, the machine's own for an empty path. When there is none, or it is
// no T, the game maker is told and null comes back. `a_t` says what is wanted: "a Control".
Node *node_or_warn(SCMachineBase *machine, const Object *kind, const NodePath &path, const StringName &setting);
void warn_wrong_class(SCMachineBase *machine, const Object *kind, const Node *node, const String &a_t, const StringName &setting);
template <class T>
T *node_or_warn_as(SCMachineBase *machine, const Object *kind, const NodePath &path, const StringName &setting, const String &a_t) {
	Node *node = node_or_warn(machine, kind, path, setting);
	T *found = Object::cast_to<T>(node);
	if (node != nullptr && found == nullptr) {
		warn_wrong_class(machine, kind, node, a_t, setting);
	}
	return found;
}
// The same by the setting's field: `node_or_warn<&Kind::node_path>(machine, action)`.
template <auto Field, class Kind>
Node *node_or_warn(SCMachineBase *machine, const Kind *kind) {
	return node_or_warn(machine, kind, setting_of<Field>(kind), name_of<Field>());
}
template <auto Field, class T, class Kind>
T *node_or_warn_as(SCMachineBase *machine, const Kind *kind, const String &a_t) {
	return node_or_warn_as<T>(machine, kind, setting_of<Field>(kind), name_of<Field>(), a_t);
}

// The node itself or the first below it of that class, from the top down.
template <class T>
T *first_of(Node *node) {
	if (node == nullptr) {
		return nullptr;
	}
	if (T *found = Object::cast_to<T>(node)) {
		return found;
	}
	for (int i = 0; i < node->get_child_count(); i++) {
		if (T *found = first_of<T>(node->get_child(i))) {
			return found;
		}
	}
	return nullptr;
}

// Puts an answer into the variable that the setting names, as the kind of value the variable holds: a fraction for an int is
// rounded. When it does not fit, or there is no variable, the game maker is told. `what` is lost then: "the number". False when
// nothing was kept. May run a game's code.
bool keep(SCMachineBase *machine, const Object *kind, const StringName &variable, const Variant &answer, const StringName &setting, const char *what);
template <auto Field, class Kind>
bool keep(SCMachineBase *machine, const Kind *kind, const Variant &answer, const char *what) {
	return keep(machine, kind, setting_of<Field>(kind), answer, name_of<Field>(), what);
}
// The same where naming no variable is fine.
template <auto Field, class Kind>
bool keep_if_named(SCMachineBase *machine, const Kind *kind, const Variant &answer) {
	const StringName variable = setting_of<Field>(kind);
	return !variable.is_empty() && keep(machine, kind, variable, answer, name_of<Field>(), "it");
}
// Several answers, each with a setting of its own that may name no variable. False when none of them does.
template <auto... Fields>
bool keep_each(SCMachineBase *machine, const SCMachineAction *action, std::initializer_list<Variant> answers) {
	const StillHere here(machine);
	const Variant *answer = answers.begin();
	bool any = false;
	const auto keep_next = [&](const StringName &variable, const StringName &setting) {
		if (here && !variable.is_empty()) {
			any = true;
			keep(machine, action, variable, *answer, setting, "it");
		}
		answer++;
	};
	(keep_next(setting_of<Fields>(action), name_of<Fields>()), ...);
	return any;
}
// For an answer that is not there: what the variable held of it goes, so that nobody works with a node or a resource that was
// not found. Any other value stays.
void let_go(SCMachineBase *machine, const StringName &variable);

// Sends an event from this machine, when one is named.
void send(SCMachineBase *machine, const StringName &event, const Variant &data = Variant());
template <auto Field>
void send(SCMachineBase *machine, const SCMachineAction *action, const Variant &data = Variant()) {
	send(machine, setting_of<Field>(action), data);
}
// One event or the other, by whether something was found or is so.
template <auto Yes, auto No>
void send_either(SCMachineBase *machine, const SCMachineAction *action, bool answer, const Variant &data = Variant()) {
	send(machine, answer ? setting_of<Yes>(action) : setting_of<No>(action), data);
}

// Only when the run it was asked in is still there.
void finish_unless_repeating(SCMachineBase *machine, SCMachineAction *action, int index, const StillHere &here);

struct Easing {
	Tween::TransitionType transition = Tween::TRANS_LINEAR;
	Tween::EaseType ease = Tween::EASE_IN_OUT;
};
// Moves a property to a value and finishes the action when it is there, at once for no time at all.
// The tween ends with the state. Null when there was nothing to wait for.
Ref<Tween> tween_property(
		SCMachineBase *machine, int index, Node *node, const NodePath &property, const Variant &to, double seconds, const Easing &easing = Easing());

} // namespace verbs
