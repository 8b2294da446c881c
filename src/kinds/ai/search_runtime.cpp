// The compiled runtime of Search Last Known.

#include "action/add_kind.hpp"
#include "character/body_keys.hpp"
#include "character/facing_along.hpp"
#include "kinds/ai/mover_step.hpp"
#include "kinds/ai/search.hpp"
#include "kinds/ai/stuck.hpp"
#include "steering/senses.hpp"

namespace {

using Kind = SCSearchLastKnownAction;
using Step = MoverStep<Kind>;

struct Names {
	StringName last_known_position = "last_known_position";
	StringName last_lost_position = "last_lost_position";
	StringName there = "there";
	StringName waited = "waited";
	StringName facing = "facing";
	StringName faced_left = "faced_left";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// To each side.
constexpr double LOOKS_ROUND_BY = Math::PI / 3.0;
constexpr double SHORTEST_LOOK = 0.01;

void give_up(const Step &step) {
	verbs::send(step.machine, step.kind->gave_up_event);
	if (step.here) {
		step.machine->finish(step.index);
	}
}

bool is_a_place(const Variant &value) {
	const Variant::Type type = value.get_type();
	return (type == Variant::VECTOR2 || type == Variant::VECTOR3) && checked::is_sound(value);
}

// Notes the place to search under the name that it is remembered by. False for none.
bool note_remembered(const Step &step, const Weak<Node> &perception) {
	for (const StringName *name : { &names().last_known_position, &names().last_lost_position }) {
		const Variant place = senses::ask(perception.get(), *name);
		if (!step.here) {
			return false;
		}
		if (is_a_place(place)) {
			step.note(*name, place);
			return true;
		}
	}
	return false;
}

Variant noted_place(const Step &step) {
	const Variant place = step.slot().get(names().last_known_position, Variant());
	return place.get_type() != Variant::NIL ? place : step.slot().get(names().last_lost_position, Variant());
}

double facing_of(const Node *body) {
	if (const auto *body_3d = Object::cast_to<Node3D>(body)) {
		return double(body_3d->get_global_rotation().y);
	}
	const auto *body_2d = Object::cast_to<Node2D>(body);
	return body_2d != nullptr ? double(body_2d->get_rotation()) : 0.0;
}

void arrive(const Step &step) {
	Dictionary slot = step.slot();
	slot[names().there] = true;
	slot[names().waited] = 0.0;
	slot[names().facing] = facing_of(step.body);
	slot[names().faced_left] = facing_along::faces_left(step.body);
	verbs::send(step.machine, step.kind->arrived_event);
}

void turn_about(const Step &step, double waited) {
	const double sine = Math::sin(waited / MAX(step.kind->look_around_for, SHORTEST_LOOK) * Math::TAU);
	const double angle = step.number(names().facing) + sine * LOOKS_ROUND_BY;
	if (auto *body_3d = Object::cast_to<Node3D>(step.body)) {
		Vector3 rotation = body_3d->get_global_rotation();
		rotation.y = real_t(angle);
		body_3d->set_global_rotation(rotation);
	} else if (auto *body_2d = Object::cast_to<Node2D>(step.body)) {
		if (body_keys::truth(body_2d, BodyKeys::shared().side_on)) {
			facing_along::face_side(body_2d, (sine < 0.0) != step.noted(names().faced_left));
		} else {
			body_2d->set_rotation(angle);
		}
	}
}

void look_about(const Step &step) {
	const double waited = step.number(names().waited) + step.delta;
	step.note(names().waited, waited);
	step.stand_still();
	if (!step.goes_on()) {
		return;
	}
	if (step.kind->turn_to_face && Math::is_finite(waited)) {
		turn_about(step, waited);
	}
	if (step.here && waited >= checked::number<&Kind::look_around_for>(step.machine, step.kind)) {
		give_up(step);
	}
}

class SearchLastKnown : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const Step step(machine, action, index, 0.0);
		if (step.kind == nullptr) {
			return;
		}
		step.has_body_or_warn();
		const Weak<Node> perception(senses::of(step.body));
		if (!note_remembered(step, perception)) {
			if (step.here) {
				verbs::say<&Kind::warn_search>(step.kind, machine, index, perception.get() != nullptr ? 1 : 0);
			}
			if (step.here) {
				give_up(step);
			}
			return;
		}
		step.note(names().there, false);
		stuck::start_here(step);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const Step step(machine, action, index, delta);
		if (step.body == nullptr) {
			machine->finish(index);
			return;
		}
		if (step.noted(names().there)) {
			look_about(step);
			return;
		}
		bool arrived = step.steer(noted_place(step), step.kind->arrive_within);
		if (!step.goes_on()) {
			return;
		}
		if (!arrived && stuck::is_so(step)) {
			step.stand_still();
			arrived = true;
		}
		if (arrived && step.goes_on()) {
			arrive(step);
		}
	}
};

const AddKinds added = {
	add_kind<SCSearchLastKnownAction, SearchLastKnown>(),
};

} // namespace
