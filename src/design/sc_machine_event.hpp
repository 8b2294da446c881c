#pragma once

// A declared event. Events themselves are only names; declaring one silences the graph's warning,
// gives it a description and lets every machine in the game hear it.

#include "settings/class_table.hpp"

#include <godot_cpp/classes/resource.hpp>

using namespace godot;

class SCMachineEvent : public Resource {
	GDCLASS(SCMachineEvent, Resource)
	SC_FIELDS

public:
	SC_ENUM(Carries, NOTHING, FLOAT, BOOL, STRING, VECTOR, NODE, ARRAY, COLOR, VARIANT, RESOURCE)

	StringName event_name;
	String description;
	bool is_global = false;
	Carries carries = NOTHING;
	String data_name;
	String data_description;

	int64_t get_carries() const { return carries; }
	void set_carries(int64_t kind);
	String value_label() const;
	// The kind of variable that can receive such an event's value.
	static String kind_of_carries(int64_t kind);
	String _to_string() const;

protected:
	static void _bind_methods();
	void _validate_property(PropertyInfo &property) const;
};
