#pragma once

// One update of a kind that walks a character about: the body found, whether it falls, and the steps that all of them take.
// Whatever it calls may run a game's code, hence goes_on().

#include "action/places.hpp"
#include "action/spaces.hpp"
#include "action/weak.hpp"
#include "character/smoothing.hpp"
#include "kinds/ai/mover_settings.hpp"
#include "machine/native_names.hpp"
#include "steering/dealing.hpp"

template <class Kind>
struct MoverStep {
	SCMachineBase *const machine;
	Kind *const kind;
	const int index;
	const double delta;
	const StillHere here;
	// Null when there is none in the scene.
	Node *const body;
	const Weak<Node> held;
	const bool falls;

	MoverStep(SCMachineBase *of_machine, SCMachineAction *action, int of_index, double of_delta) :
			machine(of_machine), kind(as_kind<Kind>(action)), index(of_index), delta(of_delta), here(of_machine), body(body_of(of_machine, kind)), held(body),
			falls(body != nullptr && walking::really_falls(of_machine, kind, body, kind->falls)) {
		// Not as a state is entered: in a scene's first moment the engine would draw what stands still at the origin.
		if (delta > 0.0) {
			smoothing::smooth(body);
		}
	}

	bool goes_on() const { return here && held.get() != nullptr; }
	Dictionary slot() const { return machine->slot(index); }
	bool noted(const StringName &name) const { return slot().get(name, false).booleanize(); }
	double number(const StringName &name) const { return values::as_number(slot().get(name, 0.0)); }
	void note(const StringName &name, const Variant &value) const { slot()[name] = value; }
	// Written only when there is something to take back.
	void take_back(const StringName &name) const {
		if (noted(name)) {
			note(name, false);
		}
	}

	// Only for a kind with a Target Variable.
	Node *target() const {
		Node *found = dealing::with(machine, kind, index, body);
		return goes_on() ? found : nullptr;
	}
	// Where a target is; nil for a node that has no place, of which the game maker is told.
	Variant place_of(Node *target) const {
		const Variant place = places::position_of(target);
		if (place.get_type() == Variant::NIL) {
			verbs::warn(machine, kind, places::no_place_words(target, verbs::setting_in_inspector(verbs::name_of<&Kind::target_variable>())) + ".");
		}
		return place;
	}

	void stand_still() const { walking::stand_still(machine, body, falls, delta); }
	bool steer(const Variant &goal, double stop_within) const {
		return walking::steer(machine, body, goal, movers::pace_of(machine, kind, falls, stop_within), delta);
	}
	void face(const Variant &direction) const {
		if (kind->turn_to_face) {
			walking::face(body, direction, checked::number<&Kind::turn_speed>(machine, kind), delta);
		}
	}

	// As it is entered: a path that was typed in and leads nowhere, or to something that has no place to move from.
	bool has_body_or_warn() const {
		if (body == nullptr && !kind->body_path.is_empty()) {
			verbs::node_or_warn<&Kind::body_path>(machine, kind);
		}
		if (body != nullptr && Object::cast_to<Node2D>(body) == nullptr && Object::cast_to<Node3D>(body) == nullptr) {
			verbs::warn_wrong_class(machine, kind, body, "a 2D or 3D node", verbs::name_of<&Kind::body_path>());
		}
		return body != nullptr;
	}

private:
	static Node *body_of(SCMachineBase *machine, const Kind *kind) {
		Node *found = kind != nullptr ? values::node_of(machine, kind->body_path) : nullptr;
		return found != nullptr && found->is_inside_tree() ? found : nullptr;
	}
};
