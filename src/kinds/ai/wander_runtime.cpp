// The compiled runtime of Wander.

#include "action/add_kind.hpp"
#include "kinds/ai/lane_jobs.hpp"
#include "kinds/ai/ledges.hpp"
#include "kinds/ai/mover_step.hpp"
#include "kinds/ai/random_places.hpp"
#include "kinds/ai/stuck.hpp"
#include "kinds/ai/wander.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace {

using Kind = SCWanderAction;
using Step = MoverStep<Kind>;

struct Names {
	StringName home = "home";
	StringName place = "place";
	StringName waited = "waited";
	StringName pause = "pause";
	StringName somewhere = "_somewhere";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// What is too near to be worth a stroll is drawn again so often.
constexpr int MORE_DRAWS = 8;

// Nil, and told, when there is none.
Variant home_of(const Step &step) {
	Variant home;
	if (step.has_body_or_warn()) {
		home = places::position_of(step.kind->home_path.is_empty() ? step.body : spaces::placed_or_warn<&Kind::home_path>(step.machine, step.kind));
	}
	if (home.get_type() == Variant::NIL) {
		step.kind->call(*WarningOf<&Kind::warn_no_home>::name, step.machine);
	}
	return home;
}

Variant draw(const Step &step) {
	Variant place;
	for (int i = 0; i <= MORE_DRAWS; i++) {
		place = step.kind->call(names().somewhere, step.body, step.slot().get(names().home, Variant()));
		if (!step.goes_on() || place.get_type() == Variant::NIL || walking::distance(step.body, place, step.falls) > step.kind->arrive_within) {
			break;
		}
	}
	return place;
}

void rest(const Step &step, double pause) {
	Dictionary slot = step.slot();
	slot[names().place] = Variant();
	slot[names().waited] = 0.0;
	slot[names().pause] = pause;
}

void wait(const Step &step) {
	step.stand_still();
	if (!step.goes_on()) {
		return;
	}
	const double waited = step.number(names().waited) + step.delta;
	step.note(names().waited, waited);
	if (waited >= step.number(names().pause)) {
		const Variant place = draw(step);
		if (step.goes_on()) {
			step.note(names().place, place);
			stuck::start_here(step);
		}
	}
}

void stroll(const Step &step, const Variant &place) {
	const bool turns_back = step.falls && ledges::is_ahead(step.body, place);
	bool is_over = turns_back;
	if (turns_back) {
		step.stand_still();
	} else {
		is_over = step.steer(place, step.kind->arrive_within);
	}
	if (!step.goes_on()) {
		return;
	}
	// What stands in its way is no reason to lean on it for ever.
	if (is_over || stuck::is_so(step)) {
		const double extra = checked::number<&Kind::random_extra_pause>(step.machine, step.kind);
		rest(step, checked::number<&Kind::pause_for>(step.machine, step.kind) + UtilityFunctions::randf() * extra);
	}
}

class Wander : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const Step step(machine, action, index, 0.0);
		if (step.kind == nullptr) {
			return;
		}
		const Variant home = home_of(step);
		if (!step.here) {
			return;
		}
		const Kind *kind = step.kind;
		const double pause = checked::number<&Kind::pause_for>(machine, kind);
		rest(step, pause);
		step.note(names().home, home);
		if (home.get_type() == Variant::NIL || !lane_jobs::are_simple_enough(step) || random_places::has_mesh(step.body) || !step.goes_on()) {
			return;
		}
		const double radius = checked::number<&Kind::radius>(machine, kind);
		const double extra = checked::number<&Kind::random_extra_pause>(machine, kind);
		lane_jobs::hand_over(step, [&](SCFastLane *lane) {
			return lane->add_wander(true, machine, step.body, home, radius, kind->speed, kind->arrive_within, pause, extra, 0.0, pause, Variant());
		});
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const Step step(machine, action, index, delta);
		if (step.body == nullptr) {
			machine->finish(index);
			return;
		}
		const Variant place = step.slot().get(names().place, Variant());
		if (place.get_type() == Variant::NIL) {
			wait(step);
		} else {
			stroll(step, place);
		}
	}
};

const AddKinds added = {
	add_kind<SCWanderAction, Wander>(),
};

} // namespace
