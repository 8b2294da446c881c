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

namespace verbs {

// "Set Visible on Door: there is no node at ../Panel. Pick one under Node." The first word is what the
// kind is called in the palette, taken from its class. Said once for this action in this machine.
void warn(SCMachineBase *machine, const Object *kind, const String &what);
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

// Keeps a value in a variable, when one is named, as the kind of value it holds. A fraction for an int
// variable is rounded, and what does not fit is told of and not kept.
void store(SCMachineBase *machine, const StringName &variable, const Variant &value);
// Sends an event from this machine, when one is named.
void send(SCMachineBase *machine, const StringName &event, const Variant &data = Variant());
// First the variable, so that whoever hears the event finds the value there.
void store_and_send(SCMachineBase *machine, const StringName &variable, const Variant &value, const StringName &event, const Variant &data = Variant());

// Only when the run it was asked in is still there.
void finish_unless_repeating(SCMachineBase *machine, SCMachineAction *action, int index, const StillHere &here);

struct Easing {
	Tween::TransitionType transition = Tween::TRANS_LINEAR;
	Tween::EaseType ease = Tween::EASE_IN_OUT;
};
// Moves a property to a value and finishes the action when it is there, at once for no time at all.
// The tween ends with the state. Null when there was nothing to wait for.
Ref<Tween> tween_property(SCMachineBase *machine, int index, Node *node, const NodePath &property, const Variant &to, double seconds, const Easing &easing = Easing());

} // namespace verbs

// A runtime that does the same work on entering and, repeating, on every tick. The derived class has
// `static void work(SCMachineBase *, SCMachineAction *, int index, double delta)`, with a delta of 0 on entering.
template <class Derived>
class OnceOrRepeating : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		Derived::work(machine, action, index, 0.0);
		verbs::finish_unless_repeating(machine, action, index, here);
	}
	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		if (action->repeats()) {
			Derived::work(machine, action, index, delta);
		}
	}
};
