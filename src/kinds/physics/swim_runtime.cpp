// The compiled runtime of Swim: who is in the water has no weight, and gets it back however that ends.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/holders.hpp"
#include "action/input_words.hpp"
#include "action/shared_verbs.hpp"
#include "character/body_keys.hpp"
#include "character/body_sides.hpp"
#include "kinds/physics/jump_take_off.hpp"
#include "kinds/physics/swim.hpp"
#include "space/water.hpp"
#include "steering/walking.hpp"

#include <godot_cpp/core/math.hpp>

namespace {

using Kind = SCSwimAction;

struct Names {
	// Whom it holds weightless, by which ticket, and what they weigh outside.
	StringName body = "body";
	StringName holds = "holds";
	StringName weight = "weight";
	// There was water once: that it is gone now is the game's doing.
	StringName found = "found";
	// As holders know it.
	StringName gravity_scale = "metadata/quillstead_gravity_scale";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// The share of its rise that the water takes off a jump in each second.
constexpr double DRAG = 2.0;

void get_in(SCMachineBase *machine, Dictionary slot, Node *body) {
	const BodyKeys &keys = BodyKeys::shared();
	// Another water may hold it weightless already.
	const double scale = body_keys::number(body, keys.gravity_scale, 1.0);
	const double weight = body_keys::number(body, keys.weight_out_of_water, scale);
	if (!body->has_meta(keys.gravity_scale)) {
		body->set_meta(keys.gravity_scale, scale);
	}
	const int64_t ticket = holders::hold(body, names().gravity_scale, machine, 0.0);
	slot[names().body] = int64_t(body->get_instance_id());
	slot[names().holds] = ticket;
	slot[names().weight] = weight;
	body->set_meta(keys.gravity_scale, 0.0);
}

void get_out(Dictionary slot) {
	if (!slot.has(names().holds)) {
		return;
	}
	const int64_t ticket = slot[names().holds];
	Object *body = ObjectDB::get_instance(ObjectID(uint64_t(int64_t(slot[names().body]))));
	slot.erase(names().holds);
	const StringName &key = BodyKeys::shared().weight_out_of_water;
	if (body != nullptr && body->has_meta(key)) {
		body->remove_meta(key);
	}
	holders::let_go(ticket);
}

struct Swimmer {
	SCMachineBase *machine;
	SCMachineAction *action;
	int index;
	double delta;
	Dictionary slot = machine->slot(index);

	// Null too for one that cannot tell who is in it, of which the game maker is told.
	Node *find_water(const Node *body, bool in_2d) {
		Node *area = water::area_at(machine, setting_of<&Kind::water_path>(action), in_2d);
		if (area == nullptr) {
			if (!slot.has(names().found)) {
				verbs::say<&Kind::warn_swim>(action, machine, index, int(Kind::NO_WATER), body);
			}
			return nullptr;
		}
		if (!slot.has(names().found)) {
			slot[names().found] = true;
		}
		if (!water::is_monitoring(area)) {
			verbs::say<&Kind::warn_swim>(action, machine, index, int(Kind::NOT_MONITORING), area);
			return nullptr;
		}
		return area;
	}

	// How fast it wants to rise by itself.
	double wanted() const {
		const StringName up = setting_of<&Kind::up_input>(action);
		const StringName down = setting_of<&Kind::down_input>(action);
		const bool rises = !up.is_empty() && input_words::is_held(up);
		const bool dives = !down.is_empty() && input_words::is_held(down);
		if (rises != dives) {
			const double speed = setting_of<&Kind::swim_speed>(action);
			return rises ? speed : -speed;
		}
		return -setting_of<&Kind::settles_at>(action);
	}

	template <class Body>
	void float_on(Body *body) {
		const auto up = body->get_up_direction();
		const auto velocity = body->get_velocity();
		const double rising = double(velocity.dot(up));
		double next = wanted();
		// A jump out of the water is slowed down and not stopped dead.
		if (rising > next && take_offs::was_lately(body)) {
			next = MAX(next, rising * Math::exp(-DRAG * delta));
		}
		if (velocity.is_finite() && checked::is_sound(next)) {
			body->set_velocity(bodies::without(velocity, up) + up * real_t(next));
		}
		const StringName &key = BodyKeys::shared().weight_out_of_water;
		if (!body->has_meta(key)) {
			body->set_meta(key, slot[names().weight]);
		}
	}

	template <class Body>
	void take(Body *body) {
		const StillHere here(machine);
		const ObjectID id = ObjectID(body->get_instance_id());
		Node *area = find_water(body, walking::is_2d(body));
		if (!here || ObjectDB::get_instance(id) == nullptr) {
			return;
		}
		const bool inside = area != nullptr && water::feels(area, body);
		const bool was_inside = slot.has(names().holds);
		// Another Body than before, by a variable.
		if (was_inside && slot[names().body] != Variant(int64_t(body->get_instance_id()))) {
			get_out(slot);
		}
		if (inside && !slot.has(names().holds)) {
			get_in(machine, slot, body);
		}
		if (inside && ObjectDB::get_instance(id) != nullptr) {
			float_on(body);
		}
		if (!inside) {
			get_out(slot);
		}
		if (here && inside != was_inside) {
			verbs::send(machine, inside ? setting_of<&Kind::entered_event>(action) : setting_of<&Kind::left_event>(action));
		}
	}
};

class Swim : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *, int index) override { machine->finish(index); }

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		Node *node = values::node_of(machine, setting_of<&Kind::body_path>(action));
		if (!bodies::visit(node, [&](auto *body) { Swimmer{ machine, action, index, delta }.take(body); })) {
			get_out(machine->slot(index));
			verbs::say<&Kind::warn_swim>(action, machine, index, int(node != nullptr ? Kind::NO_CHARACTER : Kind::NOBODY), node);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override { get_out(machine->slot(index)); }
};

const AddKinds added = {
	add_kind<SCSwimAction, Swim>(),
};

} // namespace
