// The compiled runtime of Format Time.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/values.hpp"
#include "kinds/data/clock.hpp"
#include "machine/value_kinds.hpp"

#include <cmath>

namespace {

using Kind = SCFormatTimeAction;

enum Told {
	NO_NUMBER,
	NOWHERE_TO_STORE,
};

String as_clock(double value, Kind::Style style, bool with_sign) {
	// A little more, so that 1.1, which is a hair less in binary, does not read 1.09.
	constexpr double HAIR = 0.001;
	const int64_t hundredths = ValueKinds::whole_part(std::floor(100.0 * std::abs(value) + HAIR));
	const int64_t minutes = hundredths / 6000;
	const int64_t seconds = hundredths / 100 % 60;
	const int64_t tenth = hundredths / 10 % 10;
	const int64_t hundredth = hundredths % 100;
	const String sign = with_sign ? (value >= 0.0 ? "+" : "-") : "";
	switch (style) {
		case Kind::MINUTES_SECONDS:
			return vformat("%s%d:%02d", sign, minutes, seconds);
		case Kind::MINUTES_TENTHS:
			break;
		case Kind::MINUTES_HUNDREDTHS:
			return vformat("%s%d:%02d.%02d", sign, minutes, seconds, hundredth);
		case Kind::SECONDS_TENTHS:
			return vformat("%s%d.%d", sign, hundredths / 100, tenth);
		case Kind::SECONDS_HUNDREDTHS:
			return vformat("%s%d.%02d", sign, hundredths / 100, hundredth);
		case Kind::HOURS_MINUTES_SECONDS:
			return vformat("%s%d:%02d:%02d", sign, minutes / 60, minutes % 60, seconds);
	}
	return vformat("%s%d:%02d.%d", sign, minutes, seconds, tenth);
}

class FormatTime : public OnceOrRepeating<FormatTime> {
public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StringName variable = setting_of<&Kind::seconds_variable>(action);
		const Variant held = variable.is_empty() ? Variant() : machine->get_value(variable);
		if (!values::is_number(held)) {
			verbs::warn_whole(machine, action, NO_NUMBER, vformat("Format Time: '%s' does not hold a number, so there is no time to write.", variable));
			return;
		}
		const double seconds = held;
		if (!std::isfinite(seconds)) {
			verbs::warn(machine, action,
					vformat("%s holds a number that is none or is endless, as after a division by zero, so no time was written. Look at what puts it there.",
							variable));
			return;
		}
		if (setting_of<&Kind::store_in>(action).is_empty()) {
			verbs::warn_whole(machine, action, NOWHERE_TO_STORE,
					vformat("Format Time on %s: there is nowhere to put the time, so it was lost. Pick a variable under Store In.",
							machine->name_in_messages()));
			return;
		}
		const auto style = checked::choice<&Kind::style>(machine, action, Kind::MINUTES_TENTHS);
		verbs::keep<&Kind::store_in>(machine, action, as_clock(seconds, style, setting_of<&Kind::with_sign>(action)), "the time");
	}
};

const AddKinds added = {
	add_kind<SCFormatTimeAction, FormatTime>(),
};

} // namespace
