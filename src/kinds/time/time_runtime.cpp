// Compiled runtimes of the kinds about clocks and about how fast the game runs.

#include "kinds/time/time.hpp"
#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/holders.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/property_tweener.hpp>
#include <godot_cpp/classes/time.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

struct TimeNames {
	StringName hour = "hour";
	StringName minute = "minute";
	StringName second = "second";
	StringName day = "day";
	StringName month = "month";
	StringName year = "year";
	StringName weekday = "weekday";
	StringName holds = "holds";
	StringName time_scale = "time_scale";
};

const TimeNames &names() {
	return NativeNames::of<TimeNames>();
}

class GetTime : public OnceOrRepeating<GetTime> {
	using Kind = SCGetTimeAction;

	static Variant time_of(SCMachineBase *machine, const SCMachineAction *action) {
		const Time *clock = Time::get_singleton();
		const bool utc = setting_of<&Kind::utc>(action);
		const auto which = setting_of<&Kind::which>(action);
		switch (which) {
			case Kind::SINCE_THE_STATE_BEGAN:
				return machine->state_time();
			case Kind::SINCE_THE_GAME_STARTED:
				return double(clock->get_ticks_usec()) / 1000000.0;
			case Kind::SECONDS_SINCE_1970:
				return clock->get_unix_time_from_system();
			case Kind::CLOCK_AS_TEXT:
				return clock->get_time_string_from_system(utc);
			case Kind::DATE_AS_TEXT:
				return clock->get_date_string_from_system(utc);
			default:
				break;
		}
		const Dictionary now = clock->get_datetime_dict_from_system(utc);
		switch (which) {
			case Kind::HOUR:
				return now[names().hour];
			case Kind::MINUTE:
				return now[names().minute];
			case Kind::SECOND:
				return now[names().second];
			case Kind::DAY:
				return now[names().day];
			case Kind::MONTH:
				return now[names().month];
			case Kind::YEAR:
				return now[names().year];
			case Kind::WEEKDAY:
				return now[names().weekday];
			default:
				return int64_t(now[names().hour]) * 3600 + int64_t(now[names().minute]) * 60 + int64_t(now[names().second]);
		}
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		verbs::keep<&Kind::store_in>(machine, action, time_of(machine, action), "the time");
	}
};

// Several may hold the speed for a while at once, such as a hit stop within slow motion.
class SetTimeScale : public SCNativeAction {
	using Kind = SCSetTimeScaleAction;

	static constexpr int LET_GO = 3;
	static constexpr double FASTEST = 1000.0;

	static void let_go(Dictionary memory) {
		const int64_t ticket = memory.get(names().holds, 0);
		memory.erase(names().holds);
		holders::let_go(ticket);
	}

	// False when it is no number, and the game is to go on as it did.
	static bool find_scale(SCMachineBase *machine, const SCMachineAction *action, double &scale) {
		scale = setting_of<&Kind::scale>(action);
		if (Math::is_nan(scale)) {
			verbs::warn(machine, action,
					"its Scale is no number, as 0 divided by 0 is none, so the game goes on as fast as before. Type 0 or more under Scale, or look at the "
					"variable that it reads.");
			return false;
		}
		if (scale < 0.0) {
			verbs::warn(machine, action,
					vformat("its Scale is %s, and time cannot run backward, so the game stands still. Type 0 or more under Scale.", words::number(scale)));
			scale = 0.0;
		} else if (scale > FASTEST) {
			verbs::warn(machine, action,
					vformat("its Scale is more than %s, and the physics cannot follow a game that fast, so it was taken as %s. Type less under Scale.",
							words::number(FASTEST), words::number(FASTEST)));
			scale = FASTEST;
		}
		return true;
	}

public:
	static constexpr bool HOLDS = true;

	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Engine *engine = Engine::get_singleton();
		double scale = 0.0;
		if (!find_scale(machine, action, scale)) {
			machine->finish(index);
			return;
		}
		const double duration = machine->is_inside_tree() ? MAX(checked::number<&Kind::duration>(machine, action), 0.0) : 0.0;
		const double lasts = MAX(checked::number<&Kind::lasts>(machine, action), 0.0);
		if (lasts > 0.0 || setting_of<&Kind::put_back_when_left>(action)) {
			Dictionary memory = machine->slot(index);
			const int64_t former = memory.get(names().holds, 0);
			memory[names().holds] = holders::hold(engine, names().time_scale, machine, scale);
			holders::let_go(former);
		} else {
			holders::change_for_good(engine, names().time_scale, scale);
		}
		Ref<Tween> tween;
		if (duration > 0.0) {
			tween = machine->create_tween();
			tween->set_ignore_time_scale(true);
			tween->tween_property(engine, String(names().time_scale), scale, duration);
		} else {
			engine->set_time_scale(scale);
		}
		if (lasts > 0.0) {
			machine->keep_tween(index, tween);
			machine->finish_after(index, duration + lasts, callable_mp_static(&SCNativeActions::call).bind(LET_GO, action, machine, index, 0.0), true);
		} else if (tween.is_valid()) {
			machine->finish_with_tween(index, tween);
		} else {
			machine->finish(index);
		}
	}

	void other(SCMachineBase *machine, SCMachineAction *, int index, int what) override {
		if (what == LET_GO) {
			let_go(machine->slot(index));
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override { let_go(machine->slot(index)); }
};

const AddKinds added = {
	add_kind<SCGetTimeAction, GetTime>(),
	add_kind<SCSetTimeScaleAction, SetTimeScale>(),
};

} // namespace
