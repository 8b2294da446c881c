#include "kinds/physics/apply_force_lever.hpp"

#include "action/native_calls.hpp"
#include "kinds/physics/velocity_bodies.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/physics_direct_body_state2d.hpp>
#include <godot_cpp/classes/physics_direct_body_state3d.hpp>
#include <godot_cpp/classes/physics_server2d.hpp>
#include <godot_cpp/classes/physics_server3d.hpp>
#include <godot_cpp/classes/scene_tree.hpp>

namespace levers {

namespace {

struct Names {
	// On a body that cannot be turned yet: whose they are, how often the physics put them off, and the shoves.
	StringName waiting = "quillstead_waiting_shoves";
	StringName tree_entered = "tree_entered";
	StringName physics_frame = "physics_frame";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// One that may not turn never comes to know how hard it is to turn.
constexpr int64_t MOST_PUT_OFF = 2;

// Only in a physics frame may the physics be asked for it.
bool can_be_turned(const RigidBody2D *body) {
	const PhysicsDirectBodyState2D *state = PhysicsServer2D::get_singleton()->body_get_direct_state(body->get_rid());
	return state != nullptr && state->get_inverse_inertia() > 0.0f;
}
bool can_be_turned(const RigidBody3D *body) {
	const PhysicsDirectBodyState3D *state = PhysicsServer3D::get_singleton()->body_get_direct_state(body->get_rid());
	return state != nullptr && state->get_inverse_inertia() != Vector3();
}

template <class Body>
bool is_ready(const Body *body) {
	return moving::is_in_space(body) && Engine::get_singleton()->is_in_physics_frame() && can_be_turned(body);
}

template <class Body, class Vector, class Turn>
void give_now(Body *body, const Shove<Vector, Turn> &shove) {
	if (shove.at_its_middle) {
		body->apply_central_impulse(shove.impulse);
	} else {
		body->apply_impulse(shove.impulse, shove.at);
	}
	if (shove.twist != Turn()) {
		body->apply_torque_impulse(shove.twist);
	}
}

template <class Body, class Vector, class Turn>
void give_waiting(Body *body, const Array &waiting) {
	for (int64_t i = 0; i < waiting.size(); i++) {
		const Array one = waiting[i];
		Shove<Vector, Turn> shove;
		shove.impulse = one[0];
		shove.at = one[1];
		shove.at_its_middle = one[2];
		shove.twist = one[3];
		give_now(body, shove);
	}
}

void look_again(Node *node);

void come_back(Node *body) {
	const Callable heard = NodeCall::make("Apply Force: a shove that waits", body, look_again);
	if (!body->is_inside_tree()) {
		body->connect(names().tree_entered, heard, Object::CONNECT_ONE_SHOT);
	} else {
		body->get_tree()->connect(names().physics_frame, heard, Object::CONNECT_ONE_SHOT);
	}
}

enum Part { WHOSE, PUT_OFF, SHOVES };

// Empty for none. A copy of the body has the list of the one it was copied from.
Array waiting_of(const Node *body) {
	const Array waiting = body->get_meta(names().waiting, Array());
	return waiting.size() > SHOVES && uint64_t(waiting[WHOSE]) == body->get_instance_id() ? waiting : Array();
}

template <class Body, class Vector, class Turn>
void go_on(Body *body, Array waiting) {
	const bool in_space = moving::is_in_space(body);
	const int64_t put_off = waiting[PUT_OFF];
	if (!in_space || (!is_ready(body) && put_off < MOST_PUT_OFF)) {
		waiting[PUT_OFF] = in_space && Engine::get_singleton()->is_in_physics_frame() ? put_off + 1 : put_off;
		come_back(body);
		return;
	}
	body->remove_meta(names().waiting);
	give_waiting<Body, Vector, Turn>(body, waiting[SHOVES]);
}

void look_again(Node *node) {
	const Array waiting = node != nullptr ? waiting_of(node) : Array();
	if (waiting.is_empty()) {
		return;
	}
	if (RigidBody2D *body_2d = Object::cast_to<RigidBody2D>(node)) {
		go_on<RigidBody2D, Vector2, float>(body_2d, waiting);
	} else if (RigidBody3D *body_3d = Object::cast_to<RigidBody3D>(node)) {
		go_on<RigidBody3D, Vector3, Vector3>(body_3d, waiting);
	}
}

template <class Body, class Vector, class Turn>
void give_or_wait(Body *body, const Shove<Vector, Turn> &shove) {
	if (shove.at_its_middle && shove.twist == Turn()) {
		moving::shove(body, shove.impulse);
		return;
	}
	const Array waiting = waiting_of(body);
	const Array one = Array::make(shove.impulse, shove.at, shove.at_its_middle, shove.twist);
	if (!waiting.is_empty()) {
		Array shoves = waiting[SHOVES];
		shoves.push_back(one);
	} else if (is_ready(body)) {
		give_now(body, shove);
	} else {
		body->set_meta(names().waiting, Array::make(int64_t(body->get_instance_id()), 0, Array::make(one)));
		come_back(body);
	}
}

} // namespace

void give(RigidBody2D *body, const Shove2D &shove) {
	give_or_wait(body, shove);
}
void give(RigidBody3D *body, const Shove3D &shove) {
	give_or_wait(body, shove);
}

} // namespace levers
