// The compiled runtime of Apply Force.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/shared_verbs.hpp"
#include "action/sides.hpp"
#include "action/spaces.hpp"
#include "kinds/physics/apply_force.hpp"
#include "kinds/physics/apply_force_lever.hpp"
#include "kinds/physics/velocity_bodies.hpp"

namespace {

using Kind = SCApplyForceAction;

struct Side2D {
	using Vector = Vector2;
	using Shove = levers::Shove2D;
	static Vector vector(const Variant &value) { return places::as_vector2(value); }
	static float twist(const Kind *kind, const Node *) { return float(kind->twist); }
};

struct Side3D {
	using Vector = Vector3;
	using Shove = levers::Shove3D;
	static Vector vector(const Variant &value) { return places::as_vector3(value); }
	static Vector twist(const Kind *kind, const Node *body) {
		const Vector axis = kind->space == Kind::LOCAL ? Vector(spaces::own_direction(body, kind->twist_axis)) : kind->twist_axis;
		return axis.normalized() * real_t(kind->twist);
	}
};

template <class Body>
using SideOf = std::conditional_t<std::is_base_of_v<Node2D, Body>, Side2D, Side3D>;

// What is typed in, as vectors along the axes of the world.
template <class Side>
typename Side::Vector in_world(const Kind *kind, const Node *body, const Variant &value) {
	return kind->space == Kind::LOCAL ? Side::vector(spaces::own_direction(body, value)) : Side::vector(value);
}

// Where it takes hold, from the body's own place. False for the middle of its weight.
template <class Side>
bool find_hold(SCMachineBase *machine, const Kind *kind, const Node *body, typename Side::Vector &at) {
	if (!checked::sound_or_warn(machine, kind, kind->at_offset, verbs::name_of<&Kind::at_offset>())) {
		return false;
	}
	at = in_world<Side>(kind, body, kind->at_offset);
	if (kind->at_path.is_empty()) {
		return at != typename Side::Vector();
	}
	const Node *hold = spaces::placed_or_warn<&Kind::at_path>(machine, kind);
	if (hold == nullptr || !sides::same_or_warn(machine, kind, body, hold, "so the push took hold at the middle", verbs::name_of<&Kind::at_path>())) {
		return false;
	}
	at += Side::vector(places::position_of(hold)) - Side::vector(places::position_of(body));
	return true;
}

template <class Body>
void push_rigid(SCMachineBase *machine, const Kind *kind, Body *body) {
	using Side = SideOf<Body>;
	typename Side::Shove shove;
	shove.impulse = in_world<Side>(kind, body, kind->force) * real_t(kind->whatever_its_mass ? body->get_mass() : 1.0);
	shove.at_its_middle = !find_hold<Side>(machine, kind, body, shove.at);
	shove.twist = Side::twist(kind, body);
	if (moving::is_frozen(body)) {
		verbs::warn(machine, kind, vformat("%s is frozen, so no push moves it. Let it go with Freeze first, or untick Freeze on it.", body->get_name()));
		return;
	}
	if (kind->push == Kind::A_SHOVE) {
		levers::give(body, shove);
		return;
	}
	if (!moving::is_in_space(body)) {
		return;
	}
	if (shove.at_its_middle) {
		body->apply_central_force(shove.impulse);
	} else {
		body->apply_force(shove.impulse, shove.at);
	}
	if (shove.twist != decltype(shove.twist)()) {
		body->apply_torque(shove.twist);
	}
}

template <class Body>
void push_character(SCMachineBase *machine, const Kind *kind, Body *body, double delta) {
	using Side = SideOf<Body>;
	if (kind->twist != 0.0) {
		verbs::warn(machine, kind,
				vformat("%s is a %s, which no twist turns, so it is only pushed. Put Twist at 0, or turn it with Rotate.", body->get_name(),
						body->get_class()));
	}
	const auto force = in_world<Side>(kind, body, kind->force);
	if (kind->push == Kind::A_SHOVE) {
		moving::shove(body, force);
	} else {
		body->set_velocity(body->get_velocity() + force * real_t(delta));
	}
}

void push(SCMachineBase *machine, SCMachineAction *action, double delta) {
	Kind *kind = as_kind<Kind>(action);
	Node *node = kind != nullptr ? verbs::node_or_warn<&Kind::body_path>(machine, kind) : nullptr;
	if (node == nullptr || !spaces::place_or_warn<&Kind::force>(machine, kind) ||
			!checked::sound_or_warn(machine, kind, kind->twist, verbs::name_of<&Kind::twist>()) ||
			!checked::sound_or_warn(machine, kind, kind->twist_axis, verbs::name_of<&Kind::twist_axis>())) {
		return;
	}
	const bool is_rigid = moving::visit_rigid(node, [&](auto *body) { push_rigid(machine, kind, body); });
	if (!is_rigid && !bodies::visit(node, [&](auto *body) { push_character(machine, kind, body, delta); })) {
		verbs::warn_wrong_class(machine, kind, node, moving::A_BODY, verbs::name_of<&Kind::body_path>());
	}
}

class ApplyForce : public SCNativeAction {
	static bool is_steady(const SCMachineAction *action) { return setting_of<&Kind::push>(action) == Kind::A_STEADY_PUSH; }

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		if (!is_steady(action)) {
			push(machine, action, 0.0);
		}
		verbs::finish_unless_repeating(machine, action, index, here);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int, double delta) override {
		if (is_steady(action) || action->repeats()) {
			push(machine, action, delta);
		}
	}
};

const AddKinds added = {
	add_kind<SCApplyForceAction, ApplyForce>(),
};

} // namespace
