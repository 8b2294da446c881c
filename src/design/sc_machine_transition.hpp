#pragma once

// One way out of a state: the event that takes it, and the name of the state it leads to. A name and
// not a reference, so that states can point at each other without their files loading each other.

#include "settings/class_table.hpp"

#include <godot_cpp/classes/resource.hpp>

using namespace godot;

class SCMachineTransition : public Resource {
	GDCLASS(SCMachineTransition, Resource)
	SC_FIELDS

public:
	StringName event;
	StringName to_state;
	StringName store_data_in;
	Vector2 graph_position;

	static StringName finished_event();
	String _to_string() const;

protected:
	static void _bind_methods();
	void _validate_property(PropertyInfo &property) const;
};
