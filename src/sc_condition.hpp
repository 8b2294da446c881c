#pragma once

// The base of every question. A condition is a shared resource that remembers nothing per machine;
// what it must remember lies in the record that the machine lends it while it is asked.

#include "sc_machine.hpp"
#include "settings/class_table.hpp"

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/core/gdvirtual.hpp>
#include <godot_cpp/variant/typed_dictionary.hpp>

using namespace godot;

class SCMachineCondition : public Resource {
	GDCLASS(SCMachineCondition, Resource)
	SC_FIELDS

public:
	bool invert = false;
	bool wait_for_actions = false;
	bool can_rest = false;
	String display_name;
	TypedDictionary<StringName, StringName> from_variables;

	virtual const ClassRow *class_row() const { return nullptr; }
	bool check(SCMachineBase *machine, int slot);
	virtual bool check_default(SCMachineBase *machine, int slot);
	void read_variables(SCMachineBase *machine);
	// The answer with `invert` applied and without a compiled question.
	bool evaluate(SCMachineBase *machine, int slot);

protected:
	static void _bind_methods();
	GDVIRTUAL2R(bool, _check, SCMachine *, int)
};
