// Whether the variables and events that a design names are there.

#include "action/shared_verbs.hpp"
#include "design/sc_machine_template.hpp"
#include "design/sc_machine_transition.hpp"
#include "design_check/design_check.hpp"
#include "design_check/near_names.hpp"
#include "machine_node/sc_machine.hpp"

namespace design_check {

namespace {

// Where a global was declared, and what it starts as there.
struct DeclaredGlobal {
	uint64_t design = 0;
	String place;
	Variant default_value;
};

struct DesignGlobals {
	HashMap<StringName, LocalVector<DeclaredGlobal>> by_name;
};

DesignGlobals *known_globals = nullptr;

LocalVector<StringName> names_in(const LocalVector<NameUse> &uses) {
	LocalVector<StringName> names;
	for (const NameUse &use : uses) {
		if (!CheckedDesign::holds(names, use.name)) {
			names.push_back(use.name);
		}
	}
	return names;
}

} // namespace

// A script may send any event and hear any, so only a name that is nearly another one is surely a slip.
void check_events(CheckedDesign &design) {
	HashSet<StringName> told;
	for (const NameUse &use : design.sent) {
		if (told.has(use.name) || CheckedDesign::holds(design.heard_events, use.name)) {
			continue;
		}
		told.insert(use.name);
		const StringName meant = near_names::nearest(use.name, design.heard_events);
		const bool is_sent_elsewhere = !meant.is_empty() && CheckedDesign::holds(names_in(design.sent), meant);
		const bool is_a_slip = !meant.is_empty() && !is_sent_elsewhere;
		design.find(is_a_slip ? DesignFinding::WARNING : DesignFinding::HINT, "unheard_event", use.place, use.about,
				vformat("it sends %s, and no transition here waits for that", use.name),
				is_a_slip ? vformat("%sGive both the same name.", near_names::did_you_mean(meant))
						  : String("Add a transition for it, unless a script or another machine waits for it."));
	}
}

void check_variables(CheckedDesign &design) {
	const LocalVector<StringName> written = names_in(design.written);
	HashSet<StringName> told;
	const auto look_at = [&](const NameUse &use, bool is_read) {
		if (told.has(use.name) || CheckedDesign::holds(design.variable_names, use.name)) {
			return;
		}
		const StringName meant = near_names::nearest(use.name, design.variable_names);
		// A write makes the variable, so that one which is only written works, and so does one that is read after that.
		const bool is_made_here = CheckedDesign::holds(written, use.name);
		const bool is_sure = !meant.is_empty() || !is_made_here;
		told.insert(use.name);
		String what = is_read ? vformat("it reads the variable %s, which is not declared", use.name)
							  : vformat("it writes the variable %s, which is not declared", use.name);
		if (!use.setting.is_empty()) {
			what = vformat("its %s is read from the variable %s, which is not declared", verbs::setting_in_inspector(use.setting), use.name);
		}
		design.find(is_sure ? DesignFinding::WARNING : DesignFinding::HINT, "undeclared_variable", use.place, use.about, what,
				vformat("%sAdd %s under Variables, or pick one that is there.", near_names::did_you_mean(meant), use.name));
	};
	for (const NameUse &use : design.read) {
		look_at(use, true);
	}
	for (const NameUse &use : design.written) {
		look_at(use, false);
	}
	for (const CheckedState &checked : design.states) {
		for (int64_t i = 0; i < checked.state->transitions.size(); i++) {
			const Ref<SCMachineTransition> transition = checked.state->transitions[i];
			if (transition.is_valid() && !transition->store_data_in.is_empty()) {
				NameUse use;
				use.name = transition->store_data_in;
				use.place = checked.place;
				use.about = transition;
				look_at(use, false);
			}
		}
	}
}

namespace {

// Limits that are numbers; those in variables are known only while the game runs.
void check_limits_typed(CheckedDesign &design, const SCMachineVariable &variable, const String &place) {
	const String least = variable.never_below.strip_edges();
	const String most = variable.never_above.strip_edges();
	if (least.is_valid_float() && most.is_valid_float() && least.to_float() > most.to_float()) {
		design.find(DesignFinding::WARNING, "limits_crossed", place, &variable,
				vformat("its Never Below is %s, which is more than its Never Above, %s", least, most), "Swap them.");
		return;
	}
	if (!variable.is_number() || variable.starts != SCMachineVariable::AT_ITS_STARTING_VALUE) {
		return;
	}
	const double start = values::as_number(variable.default_value);
	if (least.is_valid_float() && start < least.to_float()) {
		design.find(DesignFinding::WARNING, "start_beyond_limit", place, &variable,
				vformat("its Default Value is %s, and its Never Below is %s, so it starts as that", words::number(start), least), "Change one of them.");
	} else if (most.is_valid_float() && start > most.to_float()) {
		design.find(DesignFinding::WARNING, "start_beyond_limit", place, &variable,
				vformat("its Default Value is %s, and its Never Above is %s, so it starts as that", words::number(start), most), "Change one of them.");
	}
}

} // namespace

void check_limits(CheckedDesign &design) {
	HashSet<StringName> names;
	for (const Ref<SCMachineVariable> &variable : design.variables) {
		const String place = vformat("%s > %s", design.name, variable->name);
		if (variable->name.is_empty()) {
			design.find(DesignFinding::WARNING, "nameless_variable", design.name, variable, "one of its variables has no name, so nothing can use it",
					"Type one under Name.");
		} else if (names.has(variable->name)) {
			design.find(DesignFinding::WARNING, "same_variable", place, variable, "another variable has the same name, and the later one wins",
					"Give each a name of its own.");
		}
		names.insert(variable->name);
		const auto look_at = [&](const String &typed, const char *limit) {
			const String bound = typed.strip_edges();
			if (bound.is_empty() || bound.is_valid_float() || CheckedDesign::holds(design.variable_names, bound)) {
				return;
			}
			design.find(DesignFinding::WARNING, "missing_limit", place, variable,
					vformat("its %s is %s, which is neither a number nor a variable, so there is no limit", limit, bound),
					vformat("%sType a number, or the name of a number variable.", near_names::did_you_mean(near_names::nearest(bound, design.variable_names))));
		};
		look_at(variable->never_below, "Never Below");
		look_at(variable->get_never_above(), "Never Above");
		check_limits_typed(design, *variable.ptr(), place);
	}
}

// All machines share a global, and it starts as the first one that comes into the game says.
void check_globals(CheckedDesign &design, const Object *of) {
	if (known_globals == nullptr) {
		known_globals = memnew(DesignGlobals);
	}
	for (const Ref<SCMachineVariable> &variable : design.variables) {
		if (!variable->is_global) {
			continue;
		}
		LocalVector<DeclaredGlobal> &known = known_globals->by_name[variable->name];
		bool is_known = false;
		for (int64_t i = int64_t(known.size()) - 1; i >= 0; i--) {
			const DeclaredGlobal other = known[i];
			if (ObjectDB::get_instance(other.design) == nullptr) {
				known.remove_at_unordered(i);
			} else if (other.design == of->get_instance_id()) {
				is_known = true;
				known[i].default_value = variable->default_value;
			} else if (!values::same_value(other.default_value, variable->default_value)) {
				design.find(DesignFinding::WARNING, "two_defaults", vformat("%s > %s", design.name, variable->name), variable,
						vformat("this global starts as %s here and as %s in %s, and whichever machine comes first decides",
								words::text_of(variable->default_value), words::text_of(other.default_value), other.place),
						"Give it the same Default Value in both.");
			}
		}
		if (!is_known) {
			DeclaredGlobal fresh;
			fresh.design = of->get_instance_id();
			fresh.place = design.name;
			fresh.default_value = variable->default_value;
			known.push_back(fresh);
		}
	}
}

void free_shared() {
	if (known_globals != nullptr) {
		memdelete(known_globals);
		known_globals = nullptr;
	}
}

} // namespace design_check
