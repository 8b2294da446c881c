#include "design/sc_machine_variable.hpp"

#include "machine/companion_scripts.hpp"
#include "machine/own_copy.hpp"
#include "machine_node/sc_machine.hpp"
#include "settings/plumbing.hpp"
#include "settings/shown_names.hpp"

#include <godot_cpp/core/object.hpp>

namespace {

bool is_nothing(const Variant &value) {
	return value.get_type() == Variant::NIL || (value.get_type() == Variant::OBJECT && value.get_validated_object() == nullptr);
}

} // namespace

void SCMachineVariable::set_never_above(const String &most) {
	const bool had_a_top = has_a_top();
	never_above = most;
	if (has_a_top() != had_a_top) {
		notify_property_list_changed();
	}
}

void SCMachineVariable::set_starts(int64_t value) {
	starts = Starts(value);
	notify_property_list_changed();
}

bool SCMachineVariable::is_number() const {
	return default_value.get_type() == Variant::INT || default_value.get_type() == Variant::FLOAT;
}

bool SCMachineVariable::holds_node() const {
	return is_nothing(default_value) && !holds_resource;
}

Variant SCMachineVariable::starting_value_for(Node *machine) const {
	if (holds_node()) {
		if (machine == nullptr || starting_node.is_empty()) {
			return Variant();
		}
		Node *found = machine->get_node_or_null(starting_node);
		if (found == nullptr) {
			MakerWarnings::once_for(Object::cast_to<SCMachine>(machine), vformat("starting node %s", name),
					vformat("Variable %s on %s starts with no node, as nothing is at %s from the machine.", name, machine->get_name(), starting_node));
		}
		return found != nullptr ? Variant(found) : Variant();
	}
	if (default_value.get_type() == Variant::ARRAY) {
		return list_for(machine);
	}
	return own_copy(default_value);
}

Variant SCMachineVariable::list_for(Node *machine) const {
	Array list = Array(default_value).duplicate(true);
	if (items_are != NODES || machine == nullptr) {
		return list;
	}
	for (int64_t i = 0; i < list.size(); i++) {
		if (list[i].get_type() != Variant::NODE_PATH) {
			continue;
		}
		const NodePath path = list[i];
		Node *found = path.is_empty() ? nullptr : machine->get_node_or_null(path);
		if (found == nullptr) {
			MakerWarnings::once_for(Object::cast_to<SCMachine>(machine), vformat("list node %s %d", name, i),
					vformat("Item %d of list %s on %s holds no node, as nothing is at %s from the machine.", i + 1, name, machine->get_name(), path));
		}
		list[i] = found != nullptr ? Variant(found) : Variant();
	}
	return list;
}

String SCMachineVariable::_to_string() const {
	return vformat("%s = %s", name, default_value);
}

bool SCMachineVariable::_get(const StringName &property, Variant &value) const {
	if (property == StringName("whole_number")) {
		value = default_value.get_type() == Variant::INT;
		return true;
	}
	return false;
}

// A whole float is written to a text file as it reads there: without this mark 3.0 and 3 would come
// back as the same thing.
bool SCMachineVariable::_set(const StringName &property, const Variant &value) {
	if (property != StringName("whole_number")) {
		return false;
	}
	if (value.booleanize() && default_value.get_type() == Variant::FLOAT) {
		default_value = int64_t(double(default_value));
	}
	return true;
}

void SCMachineVariable::_get_property_list(List<PropertyInfo> *list) const {
	if (default_value.get_type() == Variant::INT) {
		list->push_back(PropertyInfo(Variant::BOOL, "whole_number", PROPERTY_HINT_NONE, "", PROPERTY_USAGE_STORAGE));
	}
}

void SCMachineVariable::_validate_property(PropertyInfo &property) const {
	shown_names::leave_out_of_files(this, property);
	const StringName &named = property.name;
	bool hidden = is_plumbing(named);
	if (named == StringName("default_value")) {
		property.type = Variant::NIL;
		property.usage |= PROPERTY_USAGE_NIL_IS_VARIANT;
		hidden = holds_node() || (is_number() && has_a_top() && starts != AT_ITS_STARTING_VALUE);
	} else if (named == StringName("starting_node")) {
		hidden = !holds_node();
	} else if (named == StringName("items_are")) {
		hidden = default_value.get_type() != Variant::ARRAY;
	} else if (named == StringName("never_below") || named == StringName("never_above")) {
		hidden = !is_number();
	} else if (named == StringName("starts")) {
		hidden = !is_number() || !has_a_top();
	} else if (named == StringName("share")) {
		hidden = !is_number() || !has_a_top() || starts != AT_A_SHARE;
	} else if (named == StringName("holds_resource")) {
		// In a file only where it says something.
		property.usage = holds_resource ? PROPERTY_USAGE_STORAGE : PROPERTY_USAGE_NONE;
	}
	if (hidden) {
		hide_from_inspector(property);
	}
}

void SCMachineVariable::_bind_methods() {
	ClassTable<SCMachineVariable> table(
			"A named value a machine carries. Actions read and write it, and it may be limited, or shared by every machine in the game.");
	table.constants_of<ListItems>();
	table.constants_of<Starts>();
	table.setting_as<&SCMachineVariable::name>("name", "variable_name", hint::PLAIN, "The name actions and conditions use.");
	table.setting<&SCMachineVariable::items_are>("items_are", "What a list's items are.").relists();
	table.setting<&SCMachineVariable::default_value>("default_value", "What the value starts as when the machine starts. Its type is the variable's type.");
	table.setting<&SCMachineVariable::starting_node>(
			"starting_node", "The node held at start, kept as the way to it from the machine, so every machine running this template finds its own.");
	table.setting<&SCMachineVariable::description>("description", hint::MULTILINE, "What the value is for.");
	table.setting<&SCMachineVariable::never_below>(
			"never_below", "The lowest value: a number such as 0, or the name of another float or int variable. Empty means no limit.");
	table.property("never_above", PropertyInfo(Variant::STRING, "never_above"), &SCMachineVariable::set_never_above, &SCMachineVariable::get_never_above,
			"The highest value: a number such as 100, or the name of another float or int variable such as max_health. Empty means no limit.", nullptr, "most");
	table.property("starts", table.enum_info<Starts>("starts"), &SCMachineVariable::set_starts, &SCMachineVariable::get_starts,
			"Where it starts: at its starting value, full, or a share of the way up.");
	table.setting<&SCMachineVariable::share>("share", hint::PERCENT, "How far up it starts, for At A Share. 50 starts half full.");
	table.setting<&SCMachineVariable::is_global>(
			"is_global", "One value for the whole game, shared by every machine with a global variable of this name, kept from scene to scene.");
	table.setting<&SCMachineVariable::holds_resource>("holds_resource", hint::NEITHER_STORED_NOR_SHOWN,
			"A Resource variable, holding a file. Not shown as a setting, because the Variables tab's kind says it.");
	ClassDB::bind_method(D_METHOD("is_number"), &SCMachineVariable::is_number);
	ClassDB::bind_method(D_METHOD("holds_node"), &SCMachineVariable::holds_node);
	ClassDB::bind_method(D_METHOD("starting_value_for", "machine"), &SCMachineVariable::starting_value_for);
}
