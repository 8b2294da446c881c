#pragma once

// A named value that every machine of a design carries: what it starts as, and its limits.

#include "settings/class_table.hpp"

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/resource.hpp>

using namespace godot;

class SCMachineVariable : public Resource {
	GDCLASS(SCMachineVariable, Resource)
	SC_FIELDS

public:
	SC_ENUM(ListItems, VALUES, NODES, FILES)
	SC_ENUM(Starts, AT_ITS_STARTING_VALUE, FULL, AT_A_SHARE)

	StringName name = "variable";
	ListItems items_are = VALUES;
	Variant default_value = 0.0;
	NodePath starting_node;
	String description;
	String never_below;
	String never_above;
	Starts starts = AT_ITS_STARTING_VALUE;
	double share = 50.0;
	bool is_global = false;
	bool holds_resource = false;

	String get_never_above() const { return never_above; }
	void set_never_above(const String &most);
	int64_t get_starts() const { return starts; }
	void set_starts(int64_t value);

	bool is_number() const;
	// A node variable is one that has nothing as its default.
	bool holds_node() const;
	// What the variable starts with on this machine: a list or dictionary of its own, a node found from it.
	Variant starting_value_for(Node *machine) const;
	String _to_string() const;

protected:
	static void _bind_methods();
	bool _get(const StringName &property, Variant &value) const;
	bool _set(const StringName &property, const Variant &value);
	void _get_property_list(List<PropertyInfo> *list) const;
	void _validate_property(PropertyInfo &property) const;

private:
	Variant list_for(Node *machine) const;
	bool has_a_top() const { return !never_above.strip_edges().is_empty(); }
};
