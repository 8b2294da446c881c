// The compiled runtimes of Keep Distance and Strafe Around.

#include "action/add_kind.hpp"
#include "kinds/ai/driving_together.hpp"
#include "kinds/ai/ground.hpp"
#include "kinds/ai/keeping_distance.hpp"
#include "kinds/ai/mover_step.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace {

struct Names {
	StringName settled = "settled";
	StringName further = "further";
	StringName sign = "sign";
	StringName left = "left";
	StringName warned = "warned";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// A wanted speed below this stands.
constexpr double STANDS = 0.00001;

// Told once for each time that the state is entered.
template <class Kind>
bool is_character_or_warn(const MoverStep<Kind> &step) {
	const bool is_character = bodies::is_character(step.body);
	if (!is_character && !step.noted(names().warned)) {
		step.note(names().warned, true);
		verbs::say<&Kind::warn_not_character>(step.kind, step.machine, step.index, step.body);
	}
	return is_character;
}

// Where the target is, for a character body; nil when there is nothing to do but what was done here.
template <class Kind>
Variant place_to_mind(const MoverStep<Kind> &step, Weak<Node> &target) {
	Node *found = step.target();
	if (!step.goes_on()) {
		return Variant();
	}
	target = Weak<Node>(found);
	const Variant place = found != nullptr ? step.place_of(found) : Variant();
	if (place.get_type() == Variant::NIL) {
		step.stand_still();
		return Variant();
	}
	return is_character_or_warn(step) ? place : Variant();
}

// Moves the body with the velocity that it has been given, then has it look at the target.
template <class Kind, class Body>
bool go_and_face(const MoverStep<Kind> &step, Body *body, const Variant &place) {
	step.machine->move_character(body, step.falls, 0.0, step.delta);
	if (!step.goes_on()) {
		return false;
	}
	if constexpr (std::is_same_v<Body, CharacterBody2D>) {
		step.face(places::as_vector2(place) - body->get_global_position());
	} else {
		step.face(places::as_vector3(place) - body->get_global_position());
	}
	return step.goes_on();
}

// It holds nothing up, and says at once what will keep it from doing anything.
template <class Kind>
void begin(const MoverStep<Kind> &step) {
	if (step.body != nullptr) {
		is_character_or_warn(step);
	} else {
		step.has_body_or_warn();
	}
	if (step.here) {
		step.machine->finish(step.index);
	}
}

class KeepDistance : public SCNativeAction {
	using Kind = SCKeepDistanceAction;
	using Step = MoverStep<Kind>;

	static double wanted_speed(const Step &step, const Variant &place) {
		const double distance = walking::distance(step.body, place, step.falls);
		const double further = step.number(names().further);
		if (distance > step.kind->no_further_than + further) {
			return movers::speed_of(step.machine, step.kind);
		}
		return distance < step.kind->no_closer_than + further ? -movers::speed_of(step.machine, step.kind) : 0.0;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const Step step(machine, action, index, 0.0);
		if (step.kind != nullptr) {
			step.note(names().settled, false);
			step.note(names().further, UtilityFunctions::randf() * checked::number<&Kind::spread>(machine, step.kind));
			begin(step);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const Step step(machine, action, index, delta);
		if (step.body == nullptr) {
			return;
		}
		Weak<Node> target(nullptr);
		const Variant place = place_to_mind(step, target);
		if (place.get_type() == Variant::NIL) {
			return;
		}
		const double wanted = wanted_speed(step, place);
		bool goes_on = false;
		bodies::visit(step.body, [&](auto *body) {
			driving_together::drive(body, ground::toward(body, place, step.falls), wanted, step.falls);
			goes_on = go_and_face(step, body, place);
		});
		if (!goes_on) {
			return;
		}
		const bool was_settled = step.noted(names().settled);
		const bool is_settled = Math::abs(wanted) < STANDS;
		step.note(names().settled, is_settled);
		if (is_settled && !was_settled) {
			verbs::send(machine, step.kind->settled_event, target.get());
		}
	}
};

class StrafeAround : public SCNativeAction {
	using Kind = SCStrafeAroundAction;
	using Step = MoverStep<Kind>;

	static double next_turn(const Step &step) {
		const double extra = checked::number<&Kind::random_extra>(step.machine, step.kind);
		return checked::number<&Kind::change_direction_every>(step.machine, step.kind) + UtilityFunctions::randf() * extra;
	}

	static double first_sign(SCMachineBase *machine, const Kind *kind) {
		switch (checked::choice<&Kind::way>(machine, kind, Kind::EITHER)) {
			case Kind::CLOCKWISE:
				return 1.0;
			case Kind::ANTICLOCKWISE:
				return -1.0;
			case Kind::EITHER:
				break;
		}
		return UtilityFunctions::randf() < 0.5 ? 1.0 : -1.0;
	}

	static double sign_now(const Step &step) {
		double sign = step.number(names().sign);
		if (step.kind->change_direction_every > 0.0) {
			double left = step.number(names().left) - step.delta;
			if (left <= 0.0) {
				sign = -sign;
				step.note(names().sign, sign);
				left = next_turn(step);
			}
			step.note(names().left, left);
		}
		return sign;
	}

	static Vector2 across(const Vector2 &way) { return Vector2(way.y, -way.x); }
	static Vector3 across(const Vector3 &way) { return Vector3(way.z, 0.0f, -way.x); }

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const Step step(machine, action, index, 0.0);
		if (step.kind != nullptr) {
			step.note(names().sign, first_sign(machine, step.kind));
			step.note(names().left, next_turn(step));
			begin(step);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const Step step(machine, action, index, delta);
		if (step.body == nullptr) {
			return;
		}
		Weak<Node> target(nullptr);
		const Variant place = place_to_mind(step, target);
		if (place.get_type() == Variant::NIL) {
			return;
		}
		const double sign = sign_now(step);
		const double speed = movers::speed_of(machine, step.kind);
		const double radius = step.kind->radius;
		bodies::visit(step.body, [&](auto *body) {
			const auto way = ground::toward(body, place, false);
			driving_together::drive(body, across(way) * real_t(sign), speed, step.falls);
			if (radius > 0.0) {
				const double off = CLAMP(walking::distance(body, place, step.falls) - radius, -1.0, 1.0);
				driving_together::drive(body, way, off * speed, step.falls);
			}
			go_and_face(step, body, place);
		});
	}
};

const AddKinds added = {
	add_kind<SCKeepDistanceAction, KeepDistance>(),
	add_kind<SCStrafeAroundAction, StrafeAround>(),
};

} // namespace
