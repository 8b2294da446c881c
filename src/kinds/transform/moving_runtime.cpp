// Compiled runtimes of the kinds that move things from place to place.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "action/sides.hpp"
#include "action/spaces.hpp"
#include "kinds/transform/moving.hpp"
#include "machine/native_names.hpp"

namespace {

struct MovingNames {
	StringName start = "start";
	StringName elapsed = "elapsed";
};

const MovingNames &names() {
	return NativeNames::of<MovingNames>();
}

// Where a step leads from where the node is, in the world.
Variant moved_by(const Node *placed, const Variant &step) {
	return spaces::with_vectors(placed, places::position_of(placed), step, [](auto from, auto by) { return from + by; });
}

class MoveTo : public SCNativeAction {
	using Kind = SCMoveToAction;

	// Where a move ends, and the property that it is told in.
	struct Goal {
		Variant place;
		bool local = false;
	};

	static bool goes_to_a_node(const SCMachineAction *action) { return !setting_of<&Kind::to_path>(action).is_empty(); }

	static Variant place_in_parent(const Node *placed) {
		Variant place;
		spaces::visit(placed, [&place](const auto *node) { place = node->get_position(); });
		return place;
	}

	static void put(Node *placed, const Goal &goal) {
		if (goal.local) {
			spaces::visit(placed, [&goal](auto *node) { node->set_position(goal.place); });
		} else {
			places::set_position_of(placed, goal.place);
		}
	}

	static bool find_goal(SCMachineBase *machine, const SCMachineAction *action, const Node *placed, Goal &goal) {
		if (goes_to_a_node(action)) {
			const Node *target = spaces::placed_or_warn<&Kind::to_path>(machine, action);
			if (target != nullptr) {
				sides::same_or_warn(machine, action, placed, target, "so its x and y were taken as they are", verbs::name_of<&Kind::to_path>());
			}
			goal.place = target != nullptr ? spaces::on_side_of(placed, places::position_of(target)) : Variant();
			return target != nullptr;
		}
		if (!spaces::place_or_warn<&Kind::to>(machine, action)) {
			return false;
		}
		goal.place = spaces::on_side_of(placed, setting_of<&Kind::to>(action));
		switch (checked::choice<&Kind::space>(machine, action, Kind::GLOBAL)) {
			case Kind::GLOBAL:
				break;
			case Kind::LOCAL:
				goal.local = true;
				break;
			case Kind::FROM_WHERE_IT_IS:
				goal.place = moved_by(placed, goal.place);
				break;
			case Kind::ITS_OWN_WAY:
				goal.place = moved_by(placed, spaces::own_direction(placed, goal.place));
				break;
		}
		return true;
	}

	// Steps that add up, and a node to go to, may lead where no setting does.
	static bool can_be_reached(SCMachineBase *machine, const SCMachineAction *action, const Node *placed, const Goal &goal) {
		if (checked::is_sound(goal.place)) {
			return true;
		}
		verbs::warn(machine, action,
				vformat("the place it would move to is none, or too far away to work with, so %s stays where it is. Look at where %s lies and at %s.",
						placed->get_name(), placed->get_name(), goes_to_a_node(action) ? "the node under To Path" : "what To holds"));
		return false;
	}

	static double seconds_for(SCMachineBase *machine, const SCMachineAction *action, const Node *placed, const Goal &goal) {
		const double speed = checked::number<&Kind::speed>(machine, action);
		if (speed <= 0.0) {
			return checked::number<&Kind::duration>(machine, action);
		}
		return places::distance_between(goal.local ? place_in_parent(placed) : places::position_of(placed), goal.place) / speed;
	}

	// The next step after a node that may be anywhere by now. True when it is there.
	static bool step_after(SCMachineBase *machine, Node *placed, const Node *target, const SCMachineAction *action, Dictionary memory, double delta) {
		const Variant to = spaces::on_side_of(placed, places::position_of(target));
		const double speed = checked::number<&Kind::speed>(machine, action);
		if (speed > 0.0) {
			const real_t step = real_t(speed * delta);
			const Variant next =
					spaces::with_vectors(placed, places::position_of(placed), to, [step](auto from, auto goal) { return from.move_toward(goal, step); });
			places::set_position_of(placed, next);
			return next == to;
		}
		const double duration = checked::number<&Kind::duration>(machine, action);
		const double elapsed = double(memory.get(names().elapsed, 0.0)) + delta;
		memory[names().elapsed] = elapsed;
		if (elapsed >= duration) {
			places::set_position_of(placed, to);
			return true;
		}
		const real_t share = real_t(Easings::share<&Kind::curve, &Kind::easing>(machine, action, elapsed, duration));
		const Variant start = memory.get(names().start, to);
		places::set_position_of(placed, spaces::with_vectors(placed, start, to, [share](auto from, auto goal) { return from.lerp(goal, share); }));
		return false;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Node *placed = spaces::placed_or_warn<&Kind::node_path>(machine, action);
		Goal goal;
		if (placed == nullptr || !find_goal(machine, action, placed, goal) || !can_be_reached(machine, action, placed, goal) ||
				(!goal.local && !spaces::has_size_or_warn(machine, action, placed, false))) {
			machine->finish(index);
			return;
		}
		spaces::warn_if_placed_by_another(machine, action, placed);
		const double seconds = seconds_for(machine, action, placed, goal);
		if (seconds <= 0.0 || !placed->is_inside_tree()) {
			const StillHere here(machine);
			put(placed, goal);
			if (here) {
				machine->finish(index);
			}
			return;
		}
		if (goes_to_a_node(action) && setting_of<&Kind::follow_it>(action)) {
			machine->slot(index)[names().start] = places::position_of(placed);
			return;
		}
		Easings::move_property<&Kind::curve, &Kind::easing>(machine, action, index, placed, goal.local ? "position" : "global_position", goal.place, seconds);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		Dictionary memory = machine->slot(index);
		if (!memory.has(names().start) || machine->is_finished(index)) {
			return;
		}
		Node *placed = spaces::placed<&Kind::node_path>(machine, action);
		const Node *target = spaces::placed<&Kind::to_path>(machine, action);
		const StillHere here(machine);
		// Whoever has gone meanwhile cannot be reached any more.
		const bool arrived = placed == nullptr || target == nullptr || !spaces::has_size_or_warn(machine, action, placed, false) ||
				step_after(machine, placed, target, action, memory, delta);
		if (arrived && here) {
			machine->finish(index);
		}
	}
};

class KeepMoving : public SCNativeAction {
	using Kind = SCTranslateAction;

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		if (const Node *placed = spaces::placed_or_warn<&Kind::node_path>(machine, action)) {
			spaces::place_or_warn<&Kind::direction>(machine, action);
			spaces::warn_if_placed_by_another(machine, action, placed);
		}
		machine->finish(index);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int, double delta) override {
		Node *placed = spaces::placed<&Kind::node_path>(machine, action);
		if (placed == nullptr || !spaces::place_or_warn<&Kind::direction>(machine, action) || !spaces::has_size_or_warn(machine, action, placed, false)) {
			return;
		}
		const Variant direction = setting_of<&Kind::direction>(action);
		const Variant way = setting_of<&Kind::space>(action) == Kind::LOCAL ? spaces::own_direction(placed, direction) : direction;
		const real_t far = real_t(checked::number<&Kind::speed>(machine, action) * delta);
		places::set_position_of(placed,
				spaces::with_vectors(placed, places::position_of(placed), way, [far](auto from, auto toward) { return from + toward.limit_length() * far; }));
	}
};

// One way and the other between the world and a node's own space.
template <class Kind, auto Point, Variant (*Turned)(const Node *, const Variant &)>
class TurnPlace : public OnceOrRepeating<TurnPlace<Kind, Point, Turned>> {
public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const Node *placed = spaces::placed_or_warn<&Kind::node_path>(machine, action);
		if (placed == nullptr || !spaces::place_or_warn<Point>(machine, action)) {
			return;
		}
		const Variant answer = Turned(placed, setting_of<Point>(action));
		if (answer.get_type() == Variant::NIL) {
			verbs::warn(machine, action,
					vformat("%s has a size of 0, so no place has a place in it, and nothing was kept. Give it a Scale above 0.", placed->get_name()));
			return;
		}
		verbs::keep<&Kind::store_in>(machine, action, answer, "the place");
	}
};

using ToGlobal = TurnPlace<SCToGlobalAction, &SCToGlobalAction::local_point, &spaces::to_world>;
using ToLocal = TurnPlace<SCToLocalAction, &SCToLocalAction::global_point, &spaces::to_own>;

const AddKinds added = {
	add_kind<SCMoveToAction, MoveTo>(),
	add_kind<SCToGlobalAction, ToGlobal>(),
	add_kind<SCToLocalAction, ToLocal>(),
	add_kind<SCTranslateAction, KeepMoving>(),
};

} // namespace
