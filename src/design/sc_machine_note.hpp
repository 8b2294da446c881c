#pragma once

// A box drawn behind the states in the graph: on its own a comment, with states dragged onto it a
// group. It has no effect on running.

#include "settings/class_table.hpp"

#include <godot_cpp/classes/resource.hpp>

using namespace godot;

class SCMachineNote : public Resource {
	GDCLASS(SCMachineNote, Resource)
	SC_FIELDS

public:
	String title = "Note";
	String text;
	Color color = Color(0.22f, 0.24f, 0.3f, 0.6f);
	Vector2 graph_position;
	Vector2 graph_size = Vector2(420, 260);
	bool fits_its_states = false;
	TypedArray<StringName> holds;
	StringName level;

	String _to_string() const;

protected:
	static void _bind_methods();
	void _validate_property(PropertyInfo &property) const;
};
