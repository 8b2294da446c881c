// The compiled runtime of Modify Stat.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/weak.hpp"
#include "kinds/items/stat_timers.hpp"
#include "kinds/items/stats.hpp"
#include "machine/native_names.hpp"

namespace {

struct Names {
	StringName script = "quillstead_stats";
	StringName add = "add";
	StringName multiply = "multiply";
	StringName take_away = "take_away";
};

const Names &names() {
	return NativeNames::of<Names>();
}

class ModifyStat : public OnceOrRepeating<ModifyStat> {
	using Kind = SCModifyStatAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StillHere here(machine);
		const StringName stat = setting_of<&Kind::variable_name>(action);
		const String source = setting_of<&Kind::source>(action).strip_edges();
		const Kind::Change change = checked::choice<&Kind::change>(machine, action, Kind::ADD);
		const bool takes_away = change == Kind::REMOVE;
		const bool stack = setting_of<&Kind::stack>(action);
		const double amount = takes_away ? 0.0 : checked::number<&Kind::amount>(machine, action);
		const double seconds = takes_away ? 0.0 : checked::number<&Kind::for_seconds>(machine, action);
		if (!takes_away && stat.is_empty()) {
			verbs::say<&Kind::warn>(action, machine, index, int64_t(Kind::NO_STAT));
			return;
		}
		if (!takes_away && source.is_empty()) {
			verbs::say<&Kind::warn>(action, machine, index, int64_t(Kind::NO_SOURCE));
		}
		if (!here) {
			return;
		}
		const Weak<SCMachineBase> changed(machine);
		if (takes_away) {
			CompanionScripts::call(names().script, names().take_away, Array::make(machine, stat, source));
		} else {
			CompanionScripts::call(names().script, change == Kind::ADD ? names().add : names().multiply, Array::make(machine, stat, source, amount, stack));
		}
		// The change was made, whatever became of the state meanwhile.
		if (changed.get() == nullptr) {
			return;
		}
		if (seconds > 0.0) {
			stat_timers::run_out_later(machine, stat, source, seconds);
		} else {
			stat_timers::forget_time(machine, stat, source);
		}
	}
};

const AddKinds added = {
	add_kind<SCModifyStatAction, ModifyStat>(),
};

} // namespace
