// The compiled runtime of Keep Apart.

#include "action/add_kind.hpp"
#include "character/in_physics.hpp"
#include "kinds/ai/crowd_grid.hpp"
#include "kinds/ai/keep_apart.hpp"
#include "kinds/ai/mover_step.hpp"

#include <godot_cpp/classes/kinematic_collision2d.hpp>
#include <godot_cpp/classes/kinematic_collision3d.hpp>
#include <godot_cpp/classes/physics_body2d.hpp>
#include <godot_cpp/classes/physics_body3d.hpp>

namespace {

using Kind = SCKeepApartAction;
using Step = MoverStep<Kind>;

constexpr double MARGIN = 0.08;

// What is solid stops at what is in its way.
template <class Physics, class Placed, class Vector>
void shove(Placed *node, const Vector &by) {
	if (auto *body = Object::cast_to<Physics>(node)) {
		if (in_physics(body)) {
			body->move_and_collide(by, false, MARGIN);
		}
	} else {
		node->set_global_position(node->get_global_position() + by);
	}
}

class KeepApart : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const Step step(machine, action, index, 0.0);
		if (step.kind != nullptr) {
			step.has_body_or_warn();
			if (step.kind->crowd_group.is_empty()) {
				verbs::warn(machine, step.kind, "no group is picked, so it keeps apart from nobody. Pick the group that the crowd is in under Crowd Group.");
			}
		}
		machine->finish(index);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const Step step(machine, action, index, delta);
		const Kind *kind = step.kind;
		if (step.body == nullptr || kind->crowd_group.is_empty()) {
			return;
		}
		const double space = checked::number<&Kind::personal_space>(machine, kind);
		auto *body_2d = Object::cast_to<Node2D>(step.body);
		auto *body_3d = Object::cast_to<Node3D>(step.body);
		if (!(space > 0.0) || (body_2d == nullptr && body_3d == nullptr)) {
			return;
		}
		const bool on_a_line = step.falls && Object::cast_to<CharacterBody2D>(step.body) != nullptr;
		const real_t strength = real_t(delta * checked::number<&Kind::push>(machine, kind));
		const Vector2 by = crowd_grid::way_out(step.body, kind->crowd_group, space, on_a_line) * strength;
		if (by != Vector2() && by.is_finite()) {
			if (body_2d != nullptr) {
				shove<PhysicsBody2D>(body_2d, by);
			} else {
				shove<PhysicsBody3D>(body_3d, Vector3(by.x, 0.0f, by.y));
			}
		}
		if (step.goes_on()) {
			machine->move_character(step.body, step.falls, 0.0, delta);
		}
	}
};

const AddKinds added = {
	add_kind<SCKeepApartAction, KeepApart>(),
};

} // namespace
