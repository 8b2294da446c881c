// The compiled runtime of Jump: whether it may, how fast it has to leave, and what it leaves behind on the body.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/shared_verbs.hpp"
#include "character/body_keys.hpp"
#include "character/body_notes.hpp"
#include "character/body_sides.hpp"
#include "character/gravity.hpp"
#include "kinds/physics/jump.hpp"
#include "kinds/physics/jump_take_off.hpp"
#include "steering/walking.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/core/math.hpp>

namespace {

using Kind = SCJumpAction;

struct Names {
	StringName to_do = "to_do";
	StringName pushed = "pushed";
	StringName waiting = "waiting";
	StringName waited = "waited";
	StringName script = "quillstead_move";
	StringName add_push = "add_push";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// A grace in seconds that no game asks for, and that still counts in frames.
constexpr double LONGEST_GRACE = 1.0e6;
// What the product of two numbers may be above the whole number that it stands for.
constexpr double ROUNDING = 1.0e-9;

enum class Allowed {
	NO,
	YES,
	OFF_A_WALL,
};

bool just_left_the_floor(const Node *body, const SCMachineAction *action) {
	const double grace = MIN(setting_of<&Kind::still_allowed_after_a_ledge>(action), LONGEST_GRACE);
	if (!(grace > 0.0)) {
		return false;
	}
	const Engine *engine = Engine::get_singleton();
	const double frames = Math::ceil(grace * MAX(engine->get_physics_ticks_per_second(), 1) - ROUNDING);
	return int64_t(engine->get_physics_frames()) - int64_t(frames) <= body_notes::last_on_floor(body);
}

template <class Body>
Allowed allowed(const Body *body, const SCMachineAction *action) {
	if (!setting_of<&Kind::only_from_the_floor>(action)) {
		return Allowed::YES;
	}
	if (take_offs::is_under_way(body)) {
		return Allowed::NO;
	}
	if (body->is_on_floor() || just_left_the_floor(body, action)) {
		return Allowed::YES;
	}
	return setting_of<&Kind::off_walls>(action) && body->is_on_wall() ? Allowed::OFF_A_WALL : Allowed::NO;
}

Vector2 away_from_wall(const CharacterBody2D *body) {
	return body->get_wall_normal();
}
Vector3 away_from_wall(const CharacterBody3D *body) {
	return bodies::without(body->get_wall_normal(), body->get_up_direction()).normalized();
}

template <class Body>
void push_off_wall(Body *body, double speed) {
	const Ref<Script> script = CompanionScripts::script(names().script);
	if (script.is_valid() && checked::is_sound(speed)) {
		script->call(names().add_push, body, away_from_wall(body) * real_t(speed));
	}
}

// In the water it weighs nothing, and jumps out of it with the weight it has outside.
double gravity_of(const Node *body, const SCMachineAction *action) {
	const BodyKeys &keys = BodyKeys::shared();
	double own = setting_of<&Kind::gravity>(action);
	if (Math::abs(own) < gravity::LEAST) {
		own = body_keys::number(body, keys.walk_gravity, 0.0);
	}
	if (body->has_meta(keys.weight_out_of_water)) {
		return gravity::of(body, own) * body_keys::number(body, keys.weight_out_of_water, 1.0);
	}
	return gravity::scaled(body, own);
}

double height_of(SCMachineBase *machine, const SCMachineAction *action) {
	const double height = values::number_of(machine, setting_of<&Kind::height>(action), setting_of<&Kind::height_variable>(action));
	return height > 0.0 && checked::sound_or_warn(machine, action, height, verbs::name_of<&Kind::height>()) ? height : 0.0;
}

void leave_word_of_cutting(Node *body, const StringName &input, double speed) {
	const BodyKeys &keys = BodyKeys::shared();
	if (!input.is_empty()) {
		body->set_meta(keys.cut_short, input);
		body->set_meta(keys.cut_from, speed);
		return;
	}
	for (const StringName &key : { keys.cut_short, keys.cut_from }) {
		if (body->has_meta(key)) {
			body->remove_meta(key);
		}
	}
}

template <class Body>
void take_off(SCMachineBase *machine, SCMachineAction *action, Body *body, bool off_a_wall, double delta) {
	TakeOff leaving;
	leaving.body = ObjectID(body->get_instance_id());
	leaving.frame = int64_t(Engine::get_singleton()->get_physics_frames());
	leaving.delta = delta;
	leaving.from_the_floor = body->is_on_floor();
	leaving.falls = walking::really_falls(machine, action, body, setting_of<&Kind::falls>(action));
	leaving.height = height_of(machine, action);
	leaving.pull.gravity = gravity_of(body, action);
	leaving.pull.at_the_top = leaving.falls ? body_keys::number(body, BodyKeys::shared().hangs_at_top, 1.0) : 1.0;
	leaving.speed = jump_arc::launch_speed(leaving.height, leaving.pull);
	if (!checked::is_sound(leaving.speed)) {
		leaving.speed = 0.0;
	}
	const auto up = body->get_up_direction();
	const auto before = body->get_velocity();
	const auto level = before.is_finite() ? bodies::without(before, up) : decltype(before)();
	body->set_velocity(level + up * real_t(leaving.speed));
	if (off_a_wall) {
		push_off_wall(body, setting_of<&Kind::away_from_wall>(action));
	}
	leave_word_of_cutting(body, setting_of<&Kind::cut_short_input>(action), leaving.speed);
	body_notes::forget_floor(body);
	take_offs::note(body, leaving);
}

class Jump : public SCNativeAction {
	static void refuse(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StillHere here(machine);
		verbs::send<&Kind::refused_event>(machine, action);
		if (here) {
			machine->finish(index);
		}
	}

	template <class Body>
	static void attempt(SCMachineBase *machine, SCMachineAction *action, int index, Dictionary slot, Body *body, double delta) {
		// The floor, the ledge it walked off, or a wall.
		const Allowed may = allowed(body, action);
		// Later, or not at all.
		if (may == Allowed::NO) {
			const double waits = setting_of<&Kind::waits_to_land_for>(action);
			if (waits > 0.0 && double(slot.get(names().waited, 0.0)) < waits) {
				slot[names().waiting] = true;
			} else {
				refuse(machine, action, index);
			}
			return;
		}
		take_off(machine, action, body, may == Allowed::OFF_A_WALL, delta);
		// Before the event, which may leave the state.
		slot[names().pushed] = true;
		verbs::send<&Kind::jumped_event>(machine, action);
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *, int index) override {
		Dictionary slot = machine->slot(index);
		slot.clear();
		slot[names().to_do] = true;
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		Dictionary slot = machine->slot(index);
		// The step after the push.
		if (slot.erase(names().pushed)) {
			machine->finish(index);
			return;
		}
		// The first try, or the next of them.
		if (slot.erase(names().to_do)) {
			slot[names().waited] = 0.0;
		} else if (slot.erase(names().waiting)) {
			slot[names().waited] = double(slot.get(names().waited, 0.0)) + delta;
		} else {
			return;
		}
		Node *node = values::node_of(machine, setting_of<&Kind::body_path>(action));
		if (!bodies::visit(node, [&](auto *body) { attempt(machine, action, index, slot, body, delta); })) {
			const StillHere here(machine);
			verbs::say<&Kind::warn_jump>(action, machine, index, node != nullptr ? 0 : 1, node);
			if (here) {
				machine->finish(index);
			}
		}
	}
};

const AddKinds added = {
	add_kind<SCJumpAction, Jump>(),
};

} // namespace
