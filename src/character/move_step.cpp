#include "character/move_step.hpp"

#include "character/body_keys.hpp"
#include "character/body_notes.hpp"
#include "character/body_sides.hpp"
#include "character/gravity.hpp"
#include "character/in_physics.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/names.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/kinematic_collision2d.hpp>
#include <godot_cpp/classes/kinematic_collision3d.hpp>
#include <godot_cpp/classes/navigation_agent2d.hpp>
#include <godot_cpp/classes/navigation_agent3d.hpp>

bool MovedBodies::may_move(uint64_t id, int64_t now) {
	if (frame != now) {
		frame = now;
		ids.clear();
	}
	for (const uint64_t moved : ids) {
		if (moved == id) {
			return false;
		}
	}
	ids.push_back(id);
	return true;
}

namespace move_step {

namespace {

struct MoveNames {
	StringName script = "quillstead_move";
	StringName cut_jump_short = "cut_jump_short";
	StringName settle_push = "settle_push";
	StringName slip_round_corner = "slip_round_corner";
	StringName slip_round_corner_3d = "slip_round_corner_3d";
};

template <class... Arguments>
Variant ask_script(const StringName &method, const Arguments &...arguments) {
	const Ref<Script> script = CompanionScripts::script(NativeNames::of<MoveNames>().script);
	return script.is_valid() ? script->call(method, arguments...) : Variant();
}

bool may_fall(const CharacterBody2D *body) {
	return body->get_motion_mode() != CharacterBody2D::MOTION_MODE_FLOATING;
}
bool may_fall(const CharacterBody3D *) {
	return true;
}

void mark_side_on(CharacterBody2D *body) {
	if (!body->has_meta(BodyKeys::shared().side_on)) {
		body->set_meta(BodyKeys::shared().side_on, true);
	}
}
void mark_side_on(CharacterBody3D *) {}

template <class Body>
void pull_down(Body *body, bool falls, double own_gravity, double delta, double fastest_fall) {
	auto velocity = body->get_velocity();
	const auto before = velocity;
	const auto up = body->get_up_direction();
	if (falls && !body->is_on_floor()) {
		velocity -= up * real_t(gravity::scaled(body, own_gravity) * delta);
	}
	if (fastest_fall > 0.0) {
		const double rising = double(velocity.dot(up));
		if (rising < -fastest_fall) {
			velocity -= up * real_t(rising + fastest_fall);
		}
	}
	// The engine prints an error for each step of a body whose speed is no number.
	if (!velocity.is_finite()) {
		velocity = {};
	}
	if (velocity != before) {
		body->set_velocity(velocity);
	}
	if (falls) {
		mark_side_on(body);
	}
}

bool keeps_clear_of_others(Node *agent) {
	if (const auto *agent_3d = Object::cast_to<NavigationAgent3D>(agent)) {
		return agent_3d->get_avoidance_enabled();
	}
	const auto *agent_2d = Object::cast_to<NavigationAgent2D>(agent);
	return agent_2d != nullptr && agent_2d->get_avoidance_enabled();
}

// The push is there for this one slide and never in the velocity that the next step goes by.
template <class Body>
void slide_pushed(Body *body, bool falls) {
	const MachineNames &names = MachineNames::shared();
	const ObjectID id = ObjectID(body->get_instance_id());
	using Vector = decltype(body->get_velocity());
	const Vector push = ask_script(NativeNames::of<MoveNames>().settle_push, body, falls);
	if (ObjectDB::get_instance(id) == nullptr) {
		return;
	}
	body->set_velocity(body->get_velocity() + push);
	// A script of the body may have a say in how it slides.
	body->call(names.move_and_slide);
	if (ObjectDB::get_instance(id) != nullptr) {
		body->set_velocity(body->get_velocity() - push);
	}
}

void slip_round_corners(CharacterBody2D *body, double delta) {
	const BodyKeys &keys = BodyKeys::shared();
	// Pixels are whole.
	if (body->has_meta(keys.corners) && int64_t(body_keys::number(body, keys.corners, 0.0)) >= 1 && body->get_velocity().y < 0.0f && !body->is_on_floor()) {
		ask_script(NativeNames::of<MoveNames>().slip_round_corner, body, delta);
	}
}
void slip_round_corners(CharacterBody3D *body, double delta) {
	const BodyKeys &keys = BodyKeys::shared();
	if (body->has_meta(keys.side_on) && body->has_meta(keys.corners) && body_keys::number(body, keys.corners, 0.0) > 0.0 && body->get_velocity().y > 0.0f &&
			!body->is_on_floor()) {
		ask_script(NativeNames::of<MoveNames>().slip_round_corner_3d, body, delta);
	}
}

// A body that floats loses only the part of its speed that drove into what it hit.
template <class Body>
void lose_what_drove_in(Body *body) {
	if (body->get_motion_mode() != Body::MOTION_MODE_FLOATING) {
		return;
	}
	const int count = body->get_slide_collision_count();
	if (count == 0) {
		return;
	}
	auto velocity = body->get_velocity();
	for (int i = 0; i < count; i++) {
		const auto collision = body->get_slide_collision(i);
		if (collision.is_null()) {
			continue;
		}
		const auto normal = collision->get_normal();
		const real_t into = velocity.dot(normal);
		if (into < 0.0f) {
			velocity -= normal * into;
		}
	}
	body->set_velocity(velocity);
}

template <class Body>
bool move_body(SCMachineBase *machine, Body *body, bool falls, double own_gravity, double delta, double fastest_fall) {
	const BodyKeys &keys = BodyKeys::shared();
	const bool is_falling = falls && may_fall(body);
	const int64_t frame = int64_t(Engine::get_singleton()->get_physics_frames());
	if (!body->is_inside_tree() || !in_physics(body)) {
		return false;
	}
	if (!machine->moved_bodies().may_move(body->get_instance_id(), frame)) {
		return false;
	}
	body_notes::note_step(body, frame);
	if (body->has_meta(keys.cut_short)) {
		ask_script(NativeNames::of<MoveNames>().cut_jump_short, body);
	}
	pull_down(body, is_falling, own_gravity, delta, fastest_fall);

	Node *agent = body_notes::agent_of(body);
	if (agent != nullptr && keeps_clear_of_others(agent)) {
		if (SCMachine *asking = Object::cast_to<SCMachine>(machine)) {
			asking->_ask_the_agent(agent, body);
			return true;
		}
	}
	if (body->has_meta(keys.steps_up)) {
		body->set_meta(keys.asked_speed, body->get_velocity());
	}
	if (body->has_meta(keys.push)) {
		slide_pushed(body, is_falling);
		return true;
	}
	slip_round_corners(body, delta);
	body->move_and_slide();
	lose_what_drove_in(body);
	return true;
}

} // namespace

bool move(SCMachineBase *machine, Node *body, bool falls, double own_gravity, double delta, double fastest_fall) {
	bool moved = false;
	bodies::visit(body, [&](auto *character) { moved = move_body(machine, character, falls, own_gravity, delta, fastest_fall); });
	return moved;
}

} // namespace move_step
