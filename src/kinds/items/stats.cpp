#include "kinds/items/stats.hpp"

#include "action/shared_verbs.hpp"
#include "kinds/items/stat_timers.hpp"
#include "settings/object_arguments.hpp"

void SCModifyStatAction::describe(KindTable<Self> &kind) {
	kind.about("items", "modify_stat",
			"Change a number the machine carries under a name, so it can be taken away again later. Boosts, curses, auras and what is worn may come and go in "
			"any order: additions go onto the number first and multiplications count for the sum, and when the last of them has gone it is what it was.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Change>();
	kind.setting<&Self::variable_name>("variable_name", "The number to change, such as speed. With Remove, empty is every number that Source changes.")
			.optional_if<&Self::change, REMOVE>()
			.written();
	kind.setting<&Self::change>("change", "Add and Multiply make a change, Remove takes away what was changed under the same Source.");
	kind.setting<&Self::amount>("amount", { PROPERTY_HINT_RANGE, "-100,100,0.01,or_less,or_greater,hide_slider" },
				"How much is added, below zero to take off, or how many times as large it gets: 1.5 is half as large again.")
			.unless<&Self::change, REMOVE>();
	kind.setting<&Self::source>("source",
			"The name that the change goes by, such as that of the item or the boost that makes it. Made again under the same name it replaces the one "
			"before.");
	kind.setting<&Self::stack>("stack", "Made again under the same Source, it comes on top of the one before.").unless<&Self::change, REMOVE>();
	kind.setting<&Self::for_seconds>("for_seconds", { PROPERTY_HINT_RANGE, "0,10,0.001,or_greater,suffix:s,hide_slider" },
				"How long it lasts, not counting while the game is paused. Made again, its time starts again. Zero lasts until it is taken away.")
			.unless<&Self::change, REMOVE>();
	kind.warns<&Self::warn>("_warn", "m", "index", "what");

	using object_arguments::guarded;
	const StringName class_name = get_class_static();
	ClassDB::bind_static_method(class_name, D_METHOD("run_out_later", "m", "stat", "source", "seconds"), guarded<&stat_timers::run_out_later>("run_out_later"));
	ClassDB::bind_static_method(class_name, D_METHOD("running_out", "m"), guarded<&stat_timers::running_out>("running_out"));
	ClassDB::bind_static_method(class_name, D_METHOD("forget_time", "m", "stat", "source"), guarded<&stat_timers::forget_time>("forget_time"));
	ClassDB::bind_static_method(class_name, D_METHOD("forget_timers", "m"), guarded<&stat_timers::forget_timers>("forget_timers"));
}

String SCModifyStatAction::summary_default() {
	const String from = source.strip_edges();
	if (change == REMOVE) {
		return vformat("Take away %s from %s", from.is_empty() ? String("the unnamed change") : from,
				variable_name.is_empty() ? String("every stat") : String(variable_name));
	}
	String how = String::utf8("×");
	if (change == ADD) {
		how = amount < 0.0 ? "-" : "+";
	}
	const double shown = change == ADD ? Math::abs(amount) : amount;
	return vformat("%s %s %s%s%s", words::picked(variable_name), how, words::number(shown),
			for_seconds > 0.0 ? vformat(" for %s s", words::number(for_seconds)) : String(), from.is_empty() ? String() : vformat(" (%s)", from));
}

void SCModifyStatAction::warn(SCMachineBase *machine, int64_t, int64_t what) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	if (what == NO_STAT) {
		verbs::warn_whole(machine, this, int(what),
				vformat("Modify Stat on %s has no stat picked, so nothing was changed. Pick the number variable to change beside Variable Name.", name));
	} else {
		verbs::warn_whole(machine, this, int(what),
				vformat("Modify Stat on %s has no Source, and changes made without one share a single slot, so another change with no Source replaces this "
						"one. Name it after the item or the boost making it.",
						name));
	}
}
