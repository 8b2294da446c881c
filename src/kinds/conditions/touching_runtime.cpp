// The compiled condition about touching: an area asks the engine who is in it, a character body what it slid along on its last move, a
// rigid body which contacts it reports. 2D and 3D are one template.

#include "action/add_kind.hpp"
#include "action/conditions.hpp"
#include "character/in_physics.hpp"
#include "kinds/conditions/touching.hpp"
#include "space/sides.hpp"

namespace {

using Kind = SCTouchingCondition;
using Test = Kind::Test;

class Touched {
	StringName group;

public:
	Node *first = nullptr;
	bool any = false;
	// Something touches that is not in the group now, and may come to be.
	bool others = false;

	explicit Touched(const StringName &only_group) : group(only_group) {}

	void add(Object *object) {
		Node *node = Object::cast_to<Node>(object);
		if (!group.is_empty() && (node == nullptr || !node->is_in_group(group))) {
			others = true;
			return;
		}
		any = true;
		first = first != nullptr ? first : node;
	}
	template <class T>
	void add_all(const TypedArray<T> &nodes) {
		for (int64_t i = 0; i < nodes.size(); i++) {
			add(nodes[i].get_validated_object());
		}
	}
};

Test test_of(surfaces::Surface surface) {
	switch (surface) {
		case surfaces::THE_GROUND:
			return Test::THE_GROUND;
		case surfaces::A_CEILING:
			return Test::A_CEILING;
		case surfaces::A_WALL:
			break;
	}
	return Test::A_WALL;
}

template <class Side>
void find(typename Side::Area *area, bool include_areas, Touched &touched) {
	touched.add_all(area->get_overlapping_bodies());
	if (include_areas) {
		touched.add_all(area->get_overlapping_areas());
	}
}

template <class Character>
bool stands_so(const Character *body, Test test) {
	switch (test) {
		case Test::THE_GROUND:
			return body->is_on_floor();
		case Test::A_WALL:
			return body->is_on_wall();
		case Test::A_CEILING:
			return body->is_on_ceiling();
		case Test::ANYTHING:
			break;
	}
	return true;
}

template <class Side>
void find(typename Side::Character *body, Test test, Touched &touched) {
	using Vector = typename Side::Vector;
	if (!stands_so(body, test)) {
		return;
	}
	const Vector up = body->get_up_direction();
	bool named = false;
	const auto hit = [&](Object *collider, const Vector &normal, const Vector &) {
		if (test == Test::ANYTHING || test_of(surfaces::of(body, normal)) == test) {
			named = true;
			touched.add(collider);
		}
	};
	for (int i = 0; i < body->get_slide_collision_count(); i++) {
		collisions::for_each(body->get_slide_collision(i), hit);
	}
	// A body held to the floor by snapping has not hit it in its last move.
	if (!named && body->is_on_floor() && in_physics(body) && (test == Test::ANYTHING || test == Test::THE_GROUND)) {
		Ref<typename Side::Collision> below;
		below.instantiate();
		const double reach = MAX(double(body->get_floor_snap_length()), Side::LEAST_REACH);
		if (body->test_move(body->get_global_transform(), up * real_t(-reach), below)) {
			collisions::for_each(below, hit);
		}
	}
	// It stands so without anyone knowing on what: the engine's word is enough where the group does not matter.
	if (!named && test != Test::ANYTHING) {
		touched.add(nullptr);
	}
}

template <class Side>
void find(typename Side::Rigid *body, Test test, Touched &touched) {
	if (test == Test::ANYTHING) {
		touched.add_all(body->get_colliding_bodies());
		return;
	}
	const typename Side::BodyState *state = Side::Server::get_singleton()->body_get_direct_state(body->get_rid());
	if (state == nullptr) {
		return;
	}
	const typename Side::Vector gravity = state->get_total_gravity();
	const typename Side::Vector up = gravity.is_zero_approx() ? Side::up() : -gravity.normalized();
	for (int i = 0; i < state->get_contact_count(); i++) {
		if (test_of(surfaces::of(state->get_contact_local_normal(i), up, surfaces::RIGID_FLOOR_ANGLE)) == test) {
			touched.add(state->get_contact_collider_object(i));
		}
	}
}

// What it is that touches, as far as it can be asked; all null when it cannot.
template <class Side>
struct Toucher {
	typename Side::Area *area = nullptr;
	typename Side::Character *character = nullptr;
	typename Side::Rigid *rigid = nullptr;

	explicit Toucher(Node *node) :
			area(Object::cast_to<typename Side::Area>(node)), character(Object::cast_to<typename Side::Character>(node)),
			rigid(Object::cast_to<typename Side::Rigid>(node)) {}

	bool is_any() const { return area != nullptr || character != nullptr || rigid != nullptr; }
	// The reason why it cannot tell what it touches; empty when it can.
	String why_not(Test test) const {
		if (area != nullptr && test != Test::ANYTHING) {
			return vformat("%s is an area, which stands on nothing, so the answer is no. Choose Anything under Test, or pick a character or rigid body under "
						   "Node Path.",
					area->get_name());
		}
		if (area != nullptr && !area->is_monitoring()) {
			return vformat("%s is not monitoring, so nothing is felt touching it and the answer is no. Turn on its Monitoring.", area->get_name());
		}
		if (rigid != nullptr && (!rigid->is_contact_monitor_enabled() || rigid->get_max_contacts_reported() < 1)) {
			return vformat("%s does not report what it touches, so the answer is no. Turn on its Contact Monitor and set Max Contacts Reported to 4 or so.",
					rigid->get_name());
		}
		return String();
	}
	void look(Test test, bool include_areas, Touched &touched) const {
		if (area != nullptr) {
			find<Side>(area, include_areas, touched);
		} else if (character != nullptr) {
			find<Side>(character, test, touched);
		} else {
			find<Side>(rigid, test, touched);
		}
	}
};

template <class Side>
bool ask(SCMachineBase *machine, SCMachineCondition *condition, const Toucher<Side> &toucher) {
	const Test test = setting_of<&Kind::test>(condition);
	const String why_not = toucher.why_not(test);
	if (!why_not.is_empty()) {
		verbs::warn(machine, condition, why_not);
		return false;
	}
	Touched touched(setting_of<&Kind::only_group>(condition));
	toucher.look(test, setting_of<&Kind::include_areas>(condition), touched);
	if (touched.first != nullptr) {
		verbs::keep_if_named<&Kind::store_touching_in>(machine, condition, touched.first);
	}
	return touched.any;
}

// Empty when nothing would tell of a change, as with a character body, or of every change: what touches
// already may join the group at any time.
template <class Side>
Array signals_of(SCMachineCondition *condition, Node *node, const Toucher<Side> &toucher) {
	Array signals;
	const Test test = setting_of<&Kind::test>(condition);
	if (test != Test::ANYTHING || toucher.character != nullptr || !toucher.why_not(test).is_empty()) {
		return signals;
	}
	const bool include_areas = toucher.area != nullptr && setting_of<&Kind::include_areas>(condition);
	Touched touched(setting_of<&Kind::only_group>(condition));
	toucher.look(test, include_areas, touched);
	if (touched.others) {
		return signals;
	}
	const auto add = [&](const char *signal) { signals.push_back(Array::make(node, StringName(signal))); };
	add("body_entered");
	add("body_exited");
	if (include_areas) {
		add("area_entered");
		add("area_exited");
	}
	// Another node may come to stand at the same path.
	add("tree_exiting");
	return signals;
}

// Calls `act` with the node as something that touches; false when it is nothing of the kind.
template <class Act>
bool visit(Node *node, Act act) {
	const Toucher<In2D> in_2d(node);
	const Toucher<In3D> in_3d(node);
	if (in_2d.is_any()) {
		act(in_2d);
	} else if (in_3d.is_any()) {
		act(in_3d);
	}
	return in_2d.is_any() || in_3d.is_any();
}

bool is_touching(SCMachineBase *machine, SCMachineCondition *condition) {
	Node *node = machine != nullptr ? conditions::node<&Kind::node_path>(machine, condition) : nullptr;
	if (node == nullptr || !node->is_inside_tree()) {
		return false;
	}
	bool answer = false;
	if (!visit(node, [&](const auto &toucher) { answer = ask(machine, condition, toucher); })) {
		verbs::warn_wrong_class(machine, condition, node, "an area, a character body or a rigid body", verbs::name_of<&Kind::node_path>());
	}
	return answer;
}

const AddKinds added = {
	add_condition<SCTouchingCondition, &is_touching>(),
};

} // namespace

bool SCTouchingCondition::check_default(SCMachineBase *machine, const Dictionary &) {
	return is_touching(machine, this);
}

Array SCTouchingCondition::rest_signals_default(SCMachineBase *machine, const Dictionary &) {
	Array signals;
	// A setting read from a variable changes without a signal.
	Node *node = machine != nullptr && from_variables.is_empty() ? values::node_of(machine, node_path) : nullptr;
	if (node != nullptr && node->is_inside_tree()) {
		visit(node, [&](const auto &toucher) { signals = signals_of(this, node, toucher); });
	}
	return signals;
}
