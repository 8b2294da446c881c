#pragma once

// The runtimes of kinds that ask the physics world something and tell the answer: in variables, and with one event for having
// found something and another for nothing.

#include "action/runtime_shapes.hpp"
#include "machine/native_names.hpp"
#include "space/queries.hpp"

#include <godot_cpp/classes/engine.hpp>

namespace answers {

struct Names {
	StringName told = "told";
	StringName waits_since = "waits_since";
};

// Sends one of the two events. A kind that asks over and over sends one only with an answer that differs from the one before. 0 is
// for nothing found; anything else tells one find from another.
template <auto Found, auto Nothing>
void tell(SCMachineBase *machine, SCMachineAction *action, int index, int64_t answer, const Variant &data) {
	if (action->repeats()) {
		const StringName &told = NativeNames::of<Names>().told;
		Dictionary slot = machine->slot(index);
		const Variant before = slot.get(told, Variant());
		if (before.get_type() == Variant::INT && int64_t(before) == answer) {
			return;
		}
		slot[told] = answer;
	}
	verbs::send_either<Found, Nothing>(machine, action, answer != 0, data);
}

// Of a list, whatever order it is in.
template <class Vector>
int64_t answer_of(const queries::Hits<Vector> &hits) {
	uint64_t sum = hits.is_empty() ? 0 : 1;
	for (const queries::Hit<Vector> &hit : hits) {
		sum += uint64_t(hit.key());
	}
	return int64_t(sum);
}

template <class Vector>
Array nodes_of(const queries::Hits<Vector> &hits) {
	Array nodes;
	for (const queries::Hit<Vector> &hit : hits) {
		if (Node *node = hit.get()) {
			nodes.push_back(node);
		}
	}
	return nodes;
}

// Keeps what the first hit is, in the settings that all such kinds name alike. The places of one that is not there stay.
template <class Kind, class Vector>
void keep_first(SCMachineBase *machine, SCMachineAction *action, const queries::Hit<Vector> *hit) {
	if (hit == nullptr) {
		verbs::let_go(machine, setting_of<&Kind::store_node_in>(action));
		return;
	}
	const StillHere here(machine);
	if (Node *node = hit->get()) {
		verbs::keep_if_named<&Kind::store_node_in>(machine, action, node);
	} else {
		verbs::let_go(machine, setting_of<&Kind::store_node_in>(action));
	}
	if (here) {
		verbs::keep_each<&Kind::store_place_in, &Kind::store_normal_in>(machine, action, { hit->place, hit->normal });
	}
}

// What comes after the lists of a kind that finds many things: the first of them, and one of the two events with all nodes.
template <class Kind, class Vector>
void tell_of_list(SCMachineBase *machine, SCMachineAction *action, int index, const queries::Hits<Vector> &hits, const Array &nodes, const StillHere &here) {
	if (here && !hits.is_empty()) {
		verbs::keep_each<&Kind::store_distance_in>(machine, action, { hits[0].distance });
	}
	if (here) {
		keep_first<Kind>(machine, action, hits.is_empty() ? nullptr : &hits[0]);
	}
	if (here) {
		tell<&Kind::hit_event, &Kind::nothing_event>(machine, action, index, answer_of(hits), nodes);
	}
}

} // namespace answers

// The derived class has `static void answer(SCMachineBase *, SCMachineAction *, int index)`. In the first frame of a machine the
// answer waits for the physics to know what stands in the scene.
template <class Derived>
class AnswersFromSpace : public SCNativeAction {
	static void answer(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StillHere here(machine);
		Derived::answer(machine, action, index);
		verbs::finish_unless_repeating(machine, action, index, here);
	}

	static bool can_ask_now(const SCMachineBase *machine) {
		return !machine->is_inside_tree() || queries::are_answered_now(places::is_2d(machine->target_node()));
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const answers::Names &names = NativeNames::of<answers::Names>();
		Dictionary slot = machine->slot(index);
		slot.erase(names.told);
		slot.erase(names.waits_since);
		if (queries::is_fresh(machine)) {
			slot[names.waits_since] = int64_t(Engine::get_singleton()->get_process_frames());
		} else if (can_ask_now(machine)) {
			answer(machine, action, index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		if (machine->is_finished(index)) {
			return;
		}
		const StringName &waits_since = NativeNames::of<answers::Names>().waits_since;
		Dictionary slot = machine->slot(index);
		if (slot.has(waits_since)) {
			if (int64_t(Engine::get_singleton()->get_process_frames()) <= int64_t(slot[waits_since])) {
				return;
			}
			slot.erase(waits_since);
		}
		if (can_ask_now(machine)) {
			answer(machine, action, index);
		}
	}
};
