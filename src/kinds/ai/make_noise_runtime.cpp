// The compiled runtime of Make Noise. Hearing is by distance alone.

#include "action/add_kind.hpp"
#include "action/places.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "kinds/ai/make_noise.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine.hpp"
#include "steering/senses.hpp"

#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>

namespace {

using Kind = SCMakeNoiseAction;

struct Names {
	StringName hearing_range = "hearing_range";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// One noise: what is told of it is taken before anybody hears it, who may do anything.
class Noise {
	SCMachineBase *machine;
	StringName group;
	StringName event;
	double carries;
	Variant place;

	bool is_in_reach(const Node *hearer) const {
		const bool in_2d = place.get_type() == Variant::VECTOR2;
		const bool on_its_side = in_2d ? Object::cast_to<Node2D>(hearer) != nullptr : Object::cast_to<Node3D>(hearer) != nullptr;
		return on_its_side && hearer->is_inside_tree() && (group.is_empty() || hearer->is_in_group(group)) && distance_to(hearer) <= carries;
	}
	double distance_to(const Node *hearer) const { return places::distance_between(places::position_of(hearer), place); }

	void tell(Node *hearer, Node *perception) const {
		const Weak<Node> later(hearer);
		const Weak<SCMachineBase> sender(machine);
		senses::hear(perception, place);
		if (SCMachine *its = SCMachine::machine_of(later.get())) {
			if (!event.is_empty()) {
				SCMachineBase::note_sender(event, sender.get());
				its->send_event(event, place);
			}
		}
	}

public:
	PackedStringArray deaf;

	Noise(SCMachineBase *from_machine, const SCMachineAction *action, const Variant &at_place) :
			machine(from_machine), group(setting_of<&Kind::only_group>(action)), event(setting_of<&Kind::heard_event>(action)),
			carries(setting_of<&Kind::max_distance>(action)), place(at_place) {}

	int64_t spread() {
		int64_t heard = 0;
		const Array all = senses::hearers(machine);
		const Weak<SCMachineBase> sender(machine);
		for (int64_t i = 0; i < all.size(); i++) {
			Node *perception = Object::cast_to<Node>(all[i].get_validated_object());
			Node *hearer = senses::is_perception(perception) ? perception->get_parent() : nullptr;
			if (hearer == nullptr || !is_in_reach(hearer)) {
				continue;
			}
			const double hearing_range = values::as_number(senses::ask(perception, names().hearing_range));
			if (distance_to(hearer) <= hearing_range && hearing_range > 0.0) {
				heard++;
				tell(hearer, perception);
			} else if (hearing_range <= 0.0) {
				deaf.push_back(hearer->get_name());
			}
			machine = sender.get();
		}
		return heard;
	}
};

// Nil when there is no node to make it at.
Variant place_of(SCMachineBase *machine, const SCMachineAction *action) {
	if (setting_of<&Kind::at>(action) == Kind::A_PLACE) {
		const Variant place = setting_of<&Kind::place>(action);
		return Object::cast_to<Node2D>(machine->target_node()) != nullptr ? Variant(places::as_vector2(place)) : Variant(places::as_vector3(place));
	}
	const Node *node = values::node_of(machine, setting_of<&Kind::at_node_path>(action));
	const bool is_placed = Object::cast_to<Node2D>(node) != nullptr || Object::cast_to<Node3D>(node) != nullptr;
	return is_placed ? places::position_of(node) : Variant();
}

class MakeNoise : public SCNativeAction {
	static constexpr int64_t NOWHERE = -1;

	static int64_t make(SCMachineBase *machine, SCMachineAction *action, int index) {
		const Variant place = place_of(machine, action);
		if (place.get_type() == Variant::NIL) {
			verbs::say<&Kind::warn_noise>(action, machine, index, int(Kind::NO_NODE), PackedStringArray());
			return NOWHERE;
		}
		if (!(setting_of<&Kind::max_distance>(action) > 0.0)) {
			verbs::say<&Kind::warn_noise>(action, machine, index, int(Kind::NO_DISTANCE), PackedStringArray());
			return 0;
		}
		const StillHere here(machine);
		Noise noise(machine, action, place);
		const int64_t heard = noise.spread();
		if (here && heard == 0 && !noise.deaf.is_empty()) {
			verbs::say<&Kind::warn_noise>(action, machine, index, int(Kind::ALL_DEAF), noise.deaf);
		}
		return heard;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		const int64_t heard = make(machine, action, index);
		if (here) {
			verbs::keep_if_named<&Kind::store_count_in>(machine, action, heard);
		}
		if (here) {
			machine->finish(index);
		}
	}
};

const AddKinds added = {
	add_kind<SCMakeNoiseAction, MakeNoise>(),
};

} // namespace
