// The compiled runtime of Wall Cling: a bound on how fast a body falls along a wall.

#include "action/add_kind.hpp"
#include "action/input_words.hpp"
#include "action/shared_verbs.hpp"
#include "character/body_keys.hpp"
#include "character/body_sides.hpp"
#include "character/gravity.hpp"
#include "character/in_physics.hpp"
#include "kinds/physics/wall_cling.hpp"
#include "steering/walking.hpp"

#include <godot_cpp/classes/kinematic_collision2d.hpp>
#include <godot_cpp/classes/kinematic_collision3d.hpp>
#include <godot_cpp/core/math.hpp>

namespace {

using Kind = SCWallClingAction;

struct Names {
	StringName clings = "clings";
	// Seconds that it has hung on this wall.
	StringName hung = "hung";
	// Seconds since the engine last said that it is against one, and which way that faced.
	StringName apart = "apart";
	StringName normal = "normal";
	// How fast it was told to rise in the last step.
	StringName told = "told";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// Metres or pixels a second at which a body counts as rising.
constexpr double RISES = 0.01;
// A body that is not pressed into a wall is on it in one step and off it in the next.
constexpr double FLICKERS_FOR = 0.05;
constexpr double FLICKERS_WITHIN = 0.02;
// How many times the gravity of the body is believed to have pulled it down.
constexpr double MOST_PULL = 4.0;

struct Cling {
	SCMachineBase *machine;
	SCMachineAction *action;
	Dictionary slot;
	double delta;

	template <class Body>
	bool is_on_wall(Body *body) {
		using Vector = decltype(body->get_velocity());
		if (body->is_on_wall()) {
			slot[names().apart] = 0.0;
			slot[names().normal] = body->get_wall_normal();
			return true;
		}
		const Variant normal = slot.get(names().normal, Variant());
		const double apart = double(slot.get(names().apart, FLICKERS_FOR)) + delta;
		if (apart >= FLICKERS_FOR || normal.get_type() != Variant(Vector()).get_type()) {
			return false;
		}
		slot[names().apart] = apart;
		const double metre = walking::is_2d(body) ? places::PIXELS_PER_METRE : 1.0;
		return in_physics(body) && body->test_move(body->get_global_transform(), Vector(normal) * real_t(-FLICKERS_WITHIN * metre));
	}

	template <class Body>
	bool may_hold(Body *body, double rising) {
		if (body->is_on_floor() || !is_on_wall(body)) {
			slot[names().hung] = 0.0;
			return false;
		}
		if (rising > RISES && rising > double(slot.get(names().told, 0.0))) {
			return false;
		}
		const double hung = slot.get(names().hung, 0.0);
		const double lets_go_after = setting_of<&Kind::lets_go_after>(action);
		if (lets_go_after > 0.0 && hung >= lets_go_after) {
			return false;
		}
		const StringName held = setting_of<&Kind::only_while_held>(action);
		return held.is_empty() || input_words::is_held(held);
	}

	// What the next move will take off its rise, as the last one did: only whoever moves the body knows how it makes it fall.
	template <class Body>
	double pull_of(const Body *body, double rising) const {
		const double expected = gravity::scaled(body, body_keys::number(body, BodyKeys::shared().walk_gravity, 0.0)) * delta;
		const double pulled = double(slot.get(names().told, rising + expected)) - rising;
		return pulled >= 0.0 && pulled <= expected * MOST_PULL ? pulled : expected;
	}

	template <class Body>
	void slow_down(Body *body, double rising) {
		const double slides = values::number_of(machine, setting_of<&Kind::slide_speed>(action), setting_of<&Kind::slide_speed_variable>(action));
		const double slowest = slides > 0.0 ? -slides : 0.0;
		const double pull = pull_of(body, rising);
		if (rising - pull >= slowest) {
			slot[names().told] = rising;
			return;
		}
		const double told = slowest + pull;
		slot[names().told] = told;
		body->set_velocity(body->get_velocity() + body->get_up_direction() * real_t(told - rising));
	}

	template <class Body>
	void take(Body *body) {
		if (!body->is_inside_tree() || !body->get_velocity().is_finite()) {
			return;
		}
		const double rising = double(body->get_velocity().dot(body->get_up_direction()));
		const bool holds = may_hold(body, rising);
		const bool held = slot.get(names().clings, false).booleanize();
		if (holds) {
			slot[names().hung] = double(slot.get(names().hung, 0.0)) + delta;
			slow_down(body, rising);
		}
		if (holds == held) {
			return;
		}
		slot[names().clings] = holds;
		if (holds) {
			verbs::send<&Kind::clinging_event>(machine, action);
		} else {
			slot.erase(names().told);
			verbs::send<&Kind::let_go_event>(machine, action);
		}
	}
};

class WallCling : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *, int index) override {
		machine->slot(index).clear();
		machine->finish(index);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		if (!(delta > 0.0)) {
			return;
		}
		Node *node = values::node_of(machine, setting_of<&Kind::body_path>(action));
		if (!bodies::visit(node, [&](auto *body) { Cling{ machine, action, machine->slot(index), delta }.take(body); })) {
			verbs::say<&Kind::warn_wall_cling>(action, machine, index, node != nullptr ? 0 : 1, node);
		}
	}
};

const AddKinds added = {
	add_kind<SCWallClingAction, WallCling>(),
};

} // namespace
