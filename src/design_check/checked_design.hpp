#pragma once

// A design as the check reads it, whether it comes from a template or lies on a machine itself: its states with their places,
// the names that it knows, and what its actions read, write and send.

#include "design/sc_machine_state.hpp"
#include "design/sc_machine_variable.hpp"
#include "design_check/design_finding.hpp"

#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/hash_set.hpp>
#include <godot_cpp/templates/local_vector.hpp>

class SCMachineAction;
class SCMachineTemplate;
class SCMachine;

struct CheckedState {
	Ref<SCMachineState> state;
	// "Guard > Patrol".
	String place;
	// It is entered with its parent, or with the machine.
	bool is_a_start = false;
	bool is_nested = false;
};

// Something an action does by name.
struct NameUse {
	StringName name;
	String place;
	Variant about;
	// The setting that a variable is to be read into, when it is told by one.
	StringName setting;
	const SCMachineState *in_state = nullptr;
};

struct CheckedDesign {
	String name;
	Ref<SCMachineState> initial_state;
	Array top_states;
	Array variable_list;
	LocalVector<CheckedState> states;
	LocalVector<Ref<SCMachineVariable>> variables;
	LocalVector<StringName> state_names;
	LocalVector<StringName> variable_names;
	// The events that transitions wait for, and those that are declared.
	LocalVector<StringName> heard_events;
	LocalVector<StringName> declared_events;
	LocalVector<NameUse> read;
	LocalVector<NameUse> written;
	LocalVector<NameUse> sent;

	LocalVector<DesignFinding> findings;

	// With nothing in it.
	explicit CheckedDesign(const String &of) : name(of) {}
	explicit CheckedDesign(const SCMachineTemplate &from);
	explicit CheckedDesign(const SCMachine &machine);

	void find(DesignFinding::Severity severity, const char *rule, const String &place, const Variant &about, const String &what, const String &remedy);
	static bool holds(const LocalVector<StringName> &names, const StringName &name);
	static String name_of(const SCMachineAction &action);

private:
	HashSet<uint64_t> visited;

	void read_states(const Array &list, const String &above, const Ref<SCMachineState> &start, const char *in_what);
	void read_actions(const CheckedState &checked);
	void read_action(SCMachineAction &action, const CheckedState &checked);
	void check_waiting(SCMachineAction &action, const CheckedState &checked, int64_t row);
	void read_variables();
};
