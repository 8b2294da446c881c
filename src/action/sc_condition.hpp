#pragma once

// The base of every condition, and of a game maker's own. A condition is a shared resource that remembers nothing per machine; what
// it must remember lies in the record that the machine lends it while it is asked.
//
// Its operations exist three times, as an action's do: the public one, the script's `_name`, and the `_default` one that kinds override.

#include "action/bound_settings.hpp"
#include "machine_node/sc_machine.hpp"
#include "settings/class_table.hpp"

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/core/gdvirtual.gen.inc>
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
	// Whoever changes one of these two here says so to `bound_settings`.
	TypedDictionary<StringName, StringName> from_variables;
	// What each bound setting was typed in as, remembered before it is first overwritten.
	TypedDictionary<StringName, Variant> typed_in;
	mutable BoundSettings bound_settings;

	// The row of the compiled kind this is, null for one made by a script.
	virtual const ClassRow *class_row() const { return nullptr; }

	// `slot` is the record it remembers by.
	bool check(SCMachineBase *machine, const Dictionary &slot);
	String summary();
	bool wants_physics();
	// The signals after which the answer may have changed.
	Array rest_signals(SCMachineBase *machine, const Dictionary &slot);
	// A promise that nothing but a variable's change can change the answer.
	bool depends_only_on_variables();
	PackedStringArray variables_read();
	PackedStringArray variables_written();

	virtual bool check_default(SCMachineBase *machine, const Dictionary &slot);
	virtual String summary_default();
	virtual bool wants_physics_default();
	virtual Array rest_signals_default(SCMachineBase *machine, const Dictionary &slot);
	virtual bool depends_only_on_variables_default();
	virtual PackedStringArray variables_read_default();
	virtual PackedStringArray variables_written_default();

	// Asked before each check.
	bool reads_variables() const { return bound_settings.may_be_in_use(from_variables); }
	TypedDictionary<StringName, StringName> get_from_variables() const {
		bound_settings.note_names();
		return from_variables;
	}
	void set_from_variables(const TypedDictionary<StringName, StringName> &bindings) {
		bound_settings.note_names();
		from_variables = bindings;
	}
	void read_variables(SCMachineBase *machine);
	// The answer with `invert` applied and without a compiled check.
	bool evaluate(SCMachineBase *machine, const Dictionary &slot);
	String shown_summary();
	// The inspector's rules, for a script that has a _validate_property of its own. A property named
	// `literal` is hidden while the `<literal>_variable` beside it names a variable.
	void validate_setting(const StringName &literal, Dictionary property) const;

protected:
	static void _bind_methods();
	bool _get(const StringName &name, Variant &value) const;
	bool _set(const StringName &name, const Variant &value);
	void _get_property_list(List<PropertyInfo> *list) const;
	void _validate_property(PropertyInfo &property) const;

	GDVIRTUAL2R(bool, _check, SCMachine *, Dictionary)
	GDVIRTUAL0R(String, _summary)
	GDVIRTUAL0R(bool, _wants_physics)
	GDVIRTUAL2R(Array, _rest_signals, SCMachine *, Dictionary)
	GDVIRTUAL0R(bool, _depends_only_on_variables)
	GDVIRTUAL0R(PackedStringArray, _variables_read)
	GDVIRTUAL0R(PackedStringArray, _variables_written)

private:
	// An operation as scripts call it.
	template <auto Operation, class... Arguments>
	auto for_script(const Variant &m, Arguments... arguments);
	static void bind_operations();
};
