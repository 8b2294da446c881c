// Compiled runtimes of the kinds that move a variable over time. They count the time of their own updates,
// so that a paused machine, a paused game and slow motion hold them up like everything else, and leaving
// the state ends them where they are.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/settings_in_use.hpp"
#include "action/values.hpp"
#include "kinds/data/easing.hpp"
#include "machine/native_names.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/classes/tween.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

struct EaseNames {
	StringName start = "start";
	StringName elapsed = "elapsed";
};

bool counts(const Variant &value) {
	return values::is_number(value) || value.get_type() == Variant::BOOL;
}

bool can_be_eased(const Variant &start, const Variant &to) {
	switch (start.get_type()) {
		case Variant::INT:
		case Variant::FLOAT:
			return counts(to);
		case Variant::VECTOR2:
		case Variant::VECTOR2I:
		case Variant::VECTOR3:
		case Variant::VECTOR3I:
			return values::can_fit(start, to);
		case Variant::COLOR:
		case Variant::VECTOR4:
		case Variant::QUATERNION:
		case Variant::BASIS:
		case Variant::TRANSFORM2D:
		case Variant::TRANSFORM3D:
			return start.get_type() == to.get_type();
		default:
			return false;
	}
}

// Beyond 1 it goes past its end, as shapes that swing do. Whole numbers go in whole steps.
Variant part_way(const Variant &start, const Variant &to, double share) {
	switch (start.get_type()) {
		case Variant::INT:
			return ValueKinds::whole_part(Math::round(Math::lerp(double(start), values::as_number(to), share)));
		case Variant::FLOAT:
			return Math::lerp(double(start), values::as_number(to), share);
		case Variant::VECTOR2:
			return Vector2(start).lerp(places::as_vector2(to), real_t(share));
		case Variant::VECTOR2I:
			return Vector2i(places::as_vector2(start).lerp(places::as_vector2(to), real_t(share)).round());
		case Variant::VECTOR3:
			return Vector3(start).lerp(places::as_vector3(to), real_t(share));
		case Variant::VECTOR3I:
			return Vector3i(places::as_vector3(start).lerp(places::as_vector3(to), real_t(share)).round());
		default:
			return UtilityFunctions::lerp(start, to, share);
	}
}

// `Derived` says how far along the way it is: static double share_at(SCMachineBase *, const SCMachineAction *, double time), with a
// time of 0 at the start and 1 at the end.
template <class Kind, class Derived>
class Ease : public SCNativeAction {
	// Writes where it is by now and finishes at the end. May run a game's code.
	static void move(SCMachineBase *machine, SCMachineAction *action, int index, const Variant &start, double elapsed) {
		const StringName name = setting_of<&Kind::variable_name>(action);
		const Variant to = setting_of<&Kind::to>(action);
		const double duration = checked::number<&Kind::duration>(machine, action);
		// Frames that add up to the duration but for their last digits are all of it.
		const bool ended = elapsed >= duration || Math::is_equal_approx(elapsed, duration);
		if (!can_be_eased(start, to)) {
			verbs::warn(machine, action,
					vformat("%s holds %s and To is %s, so there is no way from one to the other and it was left alone. Give To the same type as the variable.",
							name, values::kind_in_words(start), values::kind_in_words(to)));
			machine->finish(index);
			return;
		}
		const double share = Derived::share_at(machine, action, ended ? 1.0 : elapsed / duration);
		const bool arrived = ended && Math::is_equal_approx(share, 1.0);
		const StillHere here(machine);
		// An int that is sent to a fraction is told of once, when it gets there.
		if (arrived && start.get_type() == Variant::INT) {
			machine->set_value(name, values::keep_whole(machine, name, values::as_number(to)));
		} else {
			machine->set_value(name, arrived ? values::fitted_to(start, to) : part_way(start, to, share));
		}
		if (here && ended) {
			machine->finish(index);
		}
	}

	// What it starts from. Nothing, and the game maker told, when there is nothing to move.
	static Variant starting_value(SCMachineBase *machine, const SCMachineAction *action) {
		const StringName name = verbs::variable_or_warn<&Kind::variable_name>(machine, action, "there was nothing to ease");
		if (name.is_empty()) {
			return Variant();
		}
		const Variant start = machine->get_value(name);
		if (ValueKinds::is_nothing(start) && machine->has_value(name)) {
			verbs::warn(machine, action,
					vformat("%s holds nothing, so there is nowhere to start from and it was left alone. Give it a starting value under Variables.", name));
		} else if (ValueKinds::is_nothing(start)) {
			verbs::warn_no_such_variable<&Kind::variable_name>(machine, action, "there was nothing to ease");
		}
		return start;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const Variant start = starting_value(machine, action);
		if (ValueKinds::is_nothing(start)) {
			machine->finish(index);
			return;
		}
		Derived::warn_of_set_up(machine, action);
		const EaseNames &names = NativeNames::of<EaseNames>();
		Dictionary slot = machine->slot(index);
		slot[names.start] = start;
		slot[names.elapsed] = 0.0;
		if (checked::number<&Kind::duration>(machine, action) <= 0.0 || !can_be_eased(start, setting_of<&Kind::to>(action))) {
			move(machine, action, index, start, 0.0);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const EaseNames &names = NativeNames::of<EaseNames>();
		Dictionary slot = machine->slot(index);
		const double elapsed = double(slot.get(names.elapsed, 0.0)) + delta;
		slot[names.elapsed] = elapsed;
		move(machine, action, index, slot.get(names.start, Variant()), elapsed);
	}
};

class EaseVariable : public Ease<SCEaseVariableAction, EaseVariable> {
public:
	static double share_at(SCMachineBase *machine, const SCMachineAction *action, double time) {
		if (time >= 1.0) {
			return 1.0;
		}
		const verbs::Easing shape = Easings::of<&SCEaseVariableAction::curve, &SCEaseVariableAction::easing>(machine, action);
		return Tween::interpolate_value(0.0, 1.0, time, 1.0, shape.transition, shape.ease);
	}
	static void warn_of_set_up(SCMachineBase *, const SCMachineAction *) {}
};

class EaseAlongCurve : public Ease<SCEaseAlongCurveAction, EaseAlongCurve> {
public:
	static double share_at(SCMachineBase *, const SCMachineAction *action, double time) {
		const Ref<Curve> curve = setting_of<&SCEaseAlongCurveAction::curve>(action);
		if (curve.is_null() || curve->get_point_count() == 0) {
			return time;
		}
		return curve->sample_baked(real_t(Math::lerp(double(curve->get_min_domain()), double(curve->get_max_domain()), time)));
	}
	static void warn_of_set_up(SCMachineBase *machine, const SCMachineAction *action) {
		const Ref<Curve> curve = setting_of<&SCEaseAlongCurveAction::curve>(action);
		if (curve.is_null() || curve->get_point_count() == 0) {
			verbs::warn(
					machine, action, "it has no Curve, so it goes straight there at one speed. Draw one beside Curve, from the bottom left to the top right.");
		}
	}
};

const AddKinds added = {
	add_kind<SCEaseAlongCurveAction, EaseAlongCurve>(),
	add_kind<SCEaseVariableAction, EaseVariable>(),
};

} // namespace
