// The compiled runtimes of Chase and Flee.

#include "action/add_kind.hpp"
#include "kinds/ai/ground.hpp"
#include "kinds/ai/lane_jobs.hpp"
#include "kinds/ai/mover_step.hpp"
#include "kinds/ai/pursuit.hpp"

namespace {

struct Names {
	StringName there = "there";
	StringName safe = "safe";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// So close to what it runs from, there is no way that leads away from it.
constexpr real_t ON_TOP = 0.001f;

class Chase : public SCNativeAction {
	using Kind = SCChaseAction;
	using Step = MoverStep<Kind>;

	static void arrive(const Step &step, Node *target) {
		if (step.noted(names().there)) {
			return;
		}
		step.note(names().there, true);
		const bool finishes = step.kind->finish_on_arrival;
		verbs::send(step.machine, step.kind->reached_event, target);
		if (finishes && step.here) {
			step.machine->finish(step.index);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const Step step(machine, action, index, 0.0);
		if (step.kind == nullptr || !step.has_body_or_warn()) {
			return;
		}
		const Kind *kind = step.kind;
		step.note(names().there, false);
		if (kind->target_variable.is_empty() || kind->finish_on_arrival || !lane_jobs::are_simple_enough(step)) {
			return;
		}
		// The lane itself tells of nothing that is set up wrong.
		step.target();
		if (!step.goes_on()) {
			return;
		}
		lane_jobs::hand_over(step, [&](SCFastLane *lane) {
			return lane->add_chase(true, machine, step.body, kind->target_variable, kind->speed, kind->stop_within, kind->reached_event, false);
		});
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const Step step(machine, action, index, delta);
		if (step.body == nullptr) {
			return;
		}
		Node *target = step.target();
		if (target == nullptr && !step.goes_on()) {
			return;
		}
		const Weak<Node> prey(target);
		const Variant goal = target != nullptr ? step.place_of(target) : Variant();
		bool arrived = false;
		if (goal.get_type() == Variant::NIL) {
			step.stand_still();
		} else {
			arrived = step.steer(goal, step.kind->stop_within);
		}
		if (!step.here) {
			return;
		}
		if (arrived) {
			arrive(step, prey.get());
		} else {
			step.take_back(names().there);
		}
	}
};

class Flee : public SCNativeAction {
	using Kind = SCFleeAction;
	using Step = MoverStep<Kind>;

	static Variant goal(const Node2D *body, const Variant &from, double look_ahead, bool falls) {
		const Vector2 place = body->get_global_position();
		Vector2 away = place - places::as_vector2(from);
		away.y = falls && Object::cast_to<CharacterBody2D>(body) != nullptr ? 0.0f : away.y;
		if (!(away.length() >= ON_TOP)) {
			away = Vector2(1.0f, 0.0f).rotated(real_t(body->get_global_rotation()));
		}
		return place + away.normalized() * real_t(look_ahead);
	}
	static Variant goal(const Node3D *body, const Variant &from, double look_ahead, bool) {
		const Transform3D own = body->get_global_transform();
		Vector3 away = own.origin - places::as_vector3(from);
		away.y = 0.0f;
		if (!(away.length() >= ON_TOP)) {
			away = own.basis.get_column(2);
			away.y = 0.0f;
		}
		if (!(away.length() >= ON_TOP)) {
			away = Vector3(0.0f, 0.0f, 1.0f);
		}
		return own.origin + away.normalized() * real_t(look_ahead);
	}

	static void run(const Step &step, const Variant &from) {
		const double look_ahead = checked::number<&Kind::look_ahead>(step.machine, step.kind);
		if (const auto *body_2d = Object::cast_to<Node2D>(step.body)) {
			step.steer(goal(body_2d, from, look_ahead, step.falls), 0.0);
		} else if (const auto *body_3d = Object::cast_to<Node3D>(step.body)) {
			step.steer(goal(body_3d, from, look_ahead, step.falls), 0.0);
		}
	}

	static void be_safe(const Step &step) {
		step.stand_still();
		if (!step.here || step.noted(names().safe)) {
			return;
		}
		step.note(names().safe, true);
		const bool finishes = step.kind->finish_when_safe;
		verbs::send(step.machine, step.kind->safe_event);
		if (finishes && step.here) {
			step.machine->finish(step.index);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const Step step(machine, action, index, 0.0);
		if (step.kind != nullptr) {
			step.has_body_or_warn();
			step.note(names().safe, false);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const Step step(machine, action, index, delta);
		if (step.body == nullptr) {
			machine->finish(index);
			return;
		}
		Node *target = step.target();
		if (target == nullptr && !step.goes_on()) {
			return;
		}
		const Variant from = target != nullptr ? step.place_of(target) : Variant();
		if (from.get_type() == Variant::NIL || !(ground::distance(step.body, target) < step.kind->safe_distance)) {
			be_safe(step);
			return;
		}
		step.take_back(names().safe);
		run(step, from);
	}
};

const AddKinds added = {
	add_kind<SCChaseAction, Chase>(),
	add_kind<SCFleeAction, Flee>(),
};

} // namespace
