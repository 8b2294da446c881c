// Compiled runtimes of the kinds that move things from place to place.

#include "action/add_kind.hpp"
#include "action/answering.hpp"
#include "action/checked.hpp"
#include "action/native_names.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "action/spaces.hpp"
#include "kinds/transform/moving.hpp"

#include <godot_cpp/classes/tween.hpp>

namespace {

struct MovingNames {
	StringName node_path = "node_path";
	StringName to_path = "to_path";
	StringName to = "to";
	StringName direction = "direction";
	StringName local_point = "local_point";
	StringName global_point = "global_point";
	StringName start = "start";
	StringName elapsed = "elapsed";
};

const MovingNames &names() {
	return NativeNames::of<MovingNames>();
}

// Where a step leads from where the node is, in the world.
Variant moved_by(const Node *placed, const Variant &step) {
	const Variant from = places::position_of(placed);
	if (spaces::is_flat(placed)) {
		return places::as_vector2(from) + places::as_vector2(step);
	}
	return places::as_vector3(from) + places::as_vector3(step);
}

class MoveTo : public SCNativeAction {
	using Kind = SCMoveToAction;

	// Where a move ends, and the property that it is told in.
	struct Goal {
		Variant place;
		bool local = false;
	};

	static bool goes_to_a_node(const SCMachineAction *action) {
		return !setting_of<&Kind::to_path>(action).is_empty();
	}

	static Node *target_of(SCMachineBase *machine, const SCMachineAction *action) {
		return spaces::placed_or_warn(machine, action, setting_of<&Kind::to_path>(action), names().to_path);
	}

	static Variant place_in_parent(const Node *placed) {
		if (const Node2D *flat = Object::cast_to<Node2D>(placed)) {
			return flat->get_position();
		}
		if (const Control *control = Object::cast_to<Control>(placed)) {
			return control->get_position();
		}
		return Object::cast_to<Node3D>(placed)->get_position();
	}

	static void put(Node *placed, const Goal &goal) {
		if (!goal.local) {
			places::set_position_of(placed, goal.place);
		} else if (Node2D *flat = Object::cast_to<Node2D>(placed)) {
			flat->set_position(goal.place);
		} else if (Control *control = Object::cast_to<Control>(placed)) {
			control->set_position(goal.place);
		} else if (Node3D *deep = Object::cast_to<Node3D>(placed)) {
			deep->set_position(goal.place);
		}
	}

	static bool find_goal(SCMachineBase *machine, const SCMachineAction *action, const Node *placed, Goal &goal) {
		if (goes_to_a_node(action)) {
			const Node *target = target_of(machine, action);
			goal.place = target != nullptr ? spaces::on_side_of(placed, places::position_of(target)) : Variant();
			return target != nullptr;
		}
		const Variant to = setting_of<&Kind::to>(action);
		if (!spaces::place_or_warn(machine, action, to, names().to)) {
			return false;
		}
		const Variant place = spaces::on_side_of(placed, to);
		switch (checked::choice<&Kind::space>(machine, action, Kind::GLOBAL)) {
			case Kind::GLOBAL:
				goal.place = place;
				break;
			case Kind::LOCAL:
				goal.place = place;
				goal.local = true;
				break;
			case Kind::FROM_WHERE_IT_IS:
				goal.place = moved_by(placed, place);
				break;
			case Kind::ITS_OWN_WAY:
				goal.place = moved_by(placed, spaces::own_direction(placed, place));
				break;
		}
		return true;
	}

	// Steps that add up, and a node to go to, may lead where no setting does.
	static bool can_be_reached(SCMachineBase *machine, const SCMachineAction *action, const Node *placed, const Goal &goal) {
		if (checked::is_sound(goal.place)) {
			return true;
		}
		verbs::warn(machine, action, vformat("the place it would move to is none, or too far away to work with, so %s stays where it is. Look at where %s lies and at %s.", placed->get_name(), placed->get_name(), goes_to_a_node(action) ? "the node under To Path" : "what To holds"));
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
			const Variant now = places::position_of(placed);
			const Variant next = spaces::is_flat(placed) ? Variant(places::as_vector2(now).move_toward(to, step)) : Variant(places::as_vector3(now).move_toward(to, step));
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
		const verbs::Easing shape = Easings::of<&Kind::curve, &Kind::easing>(machine, action);
		const double share = Tween::interpolate_value(0.0, 1.0, elapsed, duration, shape.transition, shape.ease);
		const Variant start = memory.get(names().start, to);
		const Variant next = spaces::is_flat(placed) ? Variant(places::as_vector2(start).lerp(to, real_t(share))) : Variant(places::as_vector3(start).lerp(to, real_t(share)));
		places::set_position_of(placed, next);
		return false;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Node *placed = spaces::placed_or_warn(machine, action, setting_of<&Kind::node_path>(action), names().node_path);
		Goal goal;
		if (placed == nullptr || !find_goal(machine, action, placed, goal) || !can_be_reached(machine, action, placed, goal)) {
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
		Node *placed = spaces::placed(machine, setting_of<&Kind::node_path>(action));
		const Node *target = spaces::placed(machine, setting_of<&Kind::to_path>(action));
		const StillHere here(machine);
		// Whoever has gone meanwhile cannot be reached any more.
		const bool arrived = placed == nullptr || target == nullptr || step_after(machine, placed, target, action, memory, delta);
		if (arrived && here) {
			machine->finish(index);
		}
	}
};

class KeepMoving : public SCNativeAction {
	using Kind = SCTranslateAction;

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		if (const Node *placed = spaces::placed_or_warn(machine, action, setting_of<&Kind::node_path>(action), names().node_path)) {
			spaces::place_or_warn(machine, action, setting_of<&Kind::direction>(action), names().direction);
			spaces::warn_if_placed_by_another(machine, action, placed);
		}
		machine->finish(index);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int, double delta) override {
		Node *placed = spaces::placed(machine, setting_of<&Kind::node_path>(action));
		if (placed == nullptr) {
			return;
		}
		const Variant typed = setting_of<&Kind::direction>(action);
		if (!spaces::place_or_warn(machine, action, typed, names().direction)) {
			return;
		}
		const Variant direction = spaces::on_side_of(placed, typed);
		const Variant way = setting_of<&Kind::space>(action) == Kind::LOCAL ? spaces::own_direction(placed, direction) : direction;
		const real_t far = real_t(checked::number<&Kind::speed>(machine, action) * delta);
		if (spaces::is_flat(placed)) {
			places::set_position_of(placed, moved_by(placed, places::as_vector2(way).limit_length() * far));
		} else {
			places::set_position_of(placed, moved_by(placed, places::as_vector3(way).limit_length() * far));
		}
	}
};

// One way and the other between the world and a node's own space.
template <class Kind, auto PointField, Variant (*Turned)(const Node *, const Variant &), const StringName MovingNames::*PointName>
class TurnPlace : public OnceOrRepeating<TurnPlace<Kind, PointField, Turned, PointName>> {
public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const Node *placed = spaces::placed_or_warn(machine, action, setting_of<&Kind::node_path>(action), names().node_path);
		const Variant point = setting_of<PointField>(action);
		if (placed == nullptr || !spaces::place_or_warn(machine, action, point, names().*PointName)) {
			return;
		}
		const Variant answer = Turned(placed, point);
		if (answer.get_type() == Variant::NIL) {
			verbs::warn(machine, action, vformat("%s has a size of 0, so no place has a place in it, and nothing was kept. Give it a Scale above 0.", placed->get_name()));
			return;
		}
		answering::keep(machine, action, setting_of<&Kind::store_in>(action), answer, "the place");
	}
};

using ToGlobal = TurnPlace<SCToGlobalAction, &SCToGlobalAction::local_point, &spaces::to_world, &MovingNames::local_point>;
using ToLocal = TurnPlace<SCToLocalAction, &SCToLocalAction::global_point, &spaces::to_own, &MovingNames::global_point>;

const AddKinds added = {
	add_kind<SCMoveToAction, MoveTo>(),
	add_kind<SCToGlobalAction, ToGlobal>(),
	add_kind<SCToLocalAction, ToLocal>(),
	add_kind<SCTranslateAction, KeepMoving>(),
};

} // namespace
