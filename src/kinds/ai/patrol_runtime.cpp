// The compiled runtime of Patrol.

#include "action/add_kind.hpp"
#include "kinds/ai/ledges.hpp"
#include "kinds/ai/mover_step.hpp"
#include "kinds/ai/patrol.hpp"

#include <godot_cpp/classes/scene_tree.hpp>

namespace {

using Kind = SCPatrolAction;
using Step = MoverStep<Kind>;

struct Names {
	StringName there = "there";
	StringName waited = "waited";
	// The markers of a group as they were last read, and the group.
	StringName route = "route";
	StringName route_group = "route_group";
	// For a round whose progress is kept in no variable.
	StringName progress = "progress";
	StringName progress_step = "progress_step";
	// By the progress variable, the name of the other.
	StringName step_of = "step_of";
	StringName step_variable = "step_variable";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// The markers that it walks to, by Points or by the group.
class Route {
	const Step &step;
	// Nil without one, as an empty list would be made anew in each frame.
	Variant of_group;

	StringName group() const { return values::value_of(step.machine, step.kind->route_group, step.kind->route_group_variable); }

	// Read when it changes, as each reading is a new list of the engine's.
	void find_group() {
		const StringName wanted = group();
		if (wanted.is_empty() || !step.machine->is_inside_tree()) {
			return;
		}
		SceneTree *tree = step.machine->get_tree();
		Dictionary slot = step.slot();
		of_group = slot.get(names().route, Variant());
		const bool is_known = of_group.get_type() == Variant::ARRAY && StringName(slot.get(names().route_group, StringName())) == wanted;
		if (is_known && size_of_group() == tree->get_node_count_in_group(wanted)) {
			return;
		}
		of_group = tree->get_nodes_in_group(wanted);
		slot[names().route] = of_group;
		slot[names().route_group] = wanted;
	}

	int64_t size_of_group() const {
		if (of_group.get_type() != Variant::ARRAY) {
			return 0;
		}
		const Array list = of_group;
		return list.size();
	}

public:
	explicit Route(const Step &of_step) : step(of_step) {
		if (step.kind->points.is_empty()) {
			find_group();
		}
	}

	int64_t size() const { return step.kind->points.is_empty() ? size_of_group() : step.kind->points.size(); }

	// Null for one that is missing.
	Node *marker(int64_t number) const {
		if (!step.kind->points.is_empty()) {
			return step.machine->node_at(step.kind->points[number]);
		}
		const Array list = of_group;
		return Object::cast_to<Node>(list[number].get_validated_object());
	}

	// Somebody may have moved markers about in the scene.
	static void read_again(const Step &step) { step.slot().erase(names().route); }
};

// How far it has got, in variables that outlive the state.
class Progress {
	const Step &step;
	const StringName variable;

	Variant held(const StringName &name, const StringName &in_slot, int64_t otherwise) const {
		return variable.is_empty() ? step.slot().get(in_slot, otherwise) : step.machine->get_value(name, otherwise);
	}

	StringName step_variable() const {
		Dictionary slot = step.slot();
		if (StringName(slot.get(names().step_of, StringName())) != variable) {
			slot[names().step_of] = variable;
			slot[names().step_variable] = StringName(vformat("%s_step", variable));
		}
		return slot[names().step_variable];
	}

	static int64_t whole(const Variant &value, int64_t otherwise, double most) {
		const double number = ValueKinds::is_number(value) ? double(value) : double(otherwise);
		return Math::is_finite(number) ? int64_t(CLAMP(number, -most, most)) : otherwise;
	}

	void keep(const StringName &name, const StringName &in_slot, int64_t number) const {
		if (variable.is_empty()) {
			step.note(in_slot, number);
		} else {
			const Variant fitted = SCMachineBase::fit_to(step.machine->get_value(name), number);
			step.machine->set_value(name, fitted.get_type() == Variant::NIL ? Variant(number) : fitted);
		}
	}

public:
	explicit Progress(const Step &of_step) : step(of_step), variable(of_step.kind->progress_variable) {}

	int64_t marker(int64_t count) const { return CLAMP(whole(held(variable, names().progress, 0), 0, double(count)), int64_t(0), count - 1); }
	int64_t way() const {
		return whole(variable.is_empty() ? held(variable, names().progress_step, 1) : held(step_variable(), StringName(), 1), 1, 1.0) < 0 ? -1 : 1;
	}
	// Both may run a game's code.
	void keep_marker(int64_t number) const { keep(variable, names().progress, number); }
	void keep_way(int64_t way) const { keep(variable.is_empty() ? StringName() : step_variable(), names().progress_step, way); }
};

void finish_round(const Step &step) {
	verbs::send(step.machine, step.kind->finished_event);
	if (step.here) {
		step.machine->finish(step.index);
	}
}

void set_out(const Step &step, int64_t at, int64_t count) {
	step.note(names().there, false);
	Route::read_again(step);
	const Progress progress(step);
	const int64_t way = progress.way();
	int64_t next = at + way;
	const bool is_past = next < 0 || next >= count;
	switch (checked::choice<&Kind::order>(step.machine, step.kind, Kind::LOOP)) {
		case Kind::LOOP:
			next = next < 0 ? count - 1 : (is_past ? 0 : next);
			break;
		case Kind::PING_PONG:
			if (is_past) {
				next = CLAMP(at - way, int64_t(0), count - 1);
				progress.keep_way(-way);
			}
			break;
		case Kind::ONCE:
			if (is_past) {
				finish_round(step);
				return;
			}
			break;
	}
	if (step.here) {
		progress.keep_marker(next);
	}
}

void arrive(const Step &step, Node *marker) {
	Dictionary slot = step.slot();
	slot[names().there] = true;
	slot[names().waited] = 0.0;
	verbs::send(step.machine, step.kind->reached_event, marker);
}

void stop_here(const Step &step, int64_t what, int64_t number) {
	step.kind->call(*WarningOf<&Kind::warn_patrol>::name, step.machine, step.index, what, number);
	if (step.here) {
		step.machine->finish(step.index);
	}
}

class Patrol : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const Step step(machine, action, index, 0.0);
		if (step.kind != nullptr) {
			step.has_body_or_warn();
			step.note(names().there, false);
			step.note(names().waited, 0.0);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const Step step(machine, action, index, delta);
		if (step.body == nullptr) {
			machine->finish(index);
			return;
		}
		const Route route(step);
		const int64_t count = route.size();
		if (count == 0) {
			stop_here(step, 0, 0);
			return;
		}
		const int64_t at = Progress(step).marker(count);
		Node *marker = route.marker(at);
		const Variant goal = places::position_of(marker);
		if (marker == nullptr || goal.get_type() == Variant::NIL) {
			stop_here(step, 1, at + 1);
			return;
		}
		if (step.noted(names().there)) {
			const double waited = step.number(names().waited) + delta;
			step.note(names().waited, waited);
			step.stand_still();
			if (step.here && waited >= checked::number<&Kind::wait_at_each>(machine, step.kind)) {
				set_out(step, at, count);
			}
			return;
		}
		const Weak<Node> held(marker);
		bool arrived = step.falls && ledges::is_ahead(step.body, goal);
		if (arrived) {
			step.stand_still();
		} else {
			arrived = step.steer(goal, step.kind->arrive_within);
		}
		if (arrived && step.here) {
			arrive(step, held.get());
		}
	}
};

const AddKinds added = {
	add_kind<SCPatrolAction, Patrol>(),
};

} // namespace
