#pragma once

// A region of a state: a set of states with a current one of its own, running beside the others.

#include "settings/class_table.hpp"

#include <godot_cpp/classes/resource.hpp>

using namespace godot;

class SCMachineState;

class SCMachineParallelState : public Resource {
	GDCLASS(SCMachineParallelState, Resource)
	SC_FIELDS

public:
	StringName parallel_name = "Parallel";
	TypedArray<SCMachineState> states;
	Ref<SCMachineState> start_state;

	SCMachineParallelState();
	~SCMachineParallelState() override;

	Ref<SCMachineState> first_state() const;
	bool contains(const Ref<Resource> &state) const;
	String _to_string() const;

protected:
	static void _bind_methods();
	void _validate_property(PropertyInfo &property) const;
};
