#include "action/sc_condition.hpp"

#include "action/inspector.hpp"
#include "action/naming.hpp"
#include "action/script_operations.hpp"
#include "action/static_facilities.hpp"
#include "action/summary_line.hpp"
#include "action/twins.hpp"

#include <godot_cpp/core/object.hpp>

namespace {

SCMachine *as_machine(SCMachineBase *machine) {
	return Object::cast_to<SCMachine>(machine);
}

} // namespace

bool SCMachineCondition::check(SCMachineBase *machine, const Dictionary &slot) {
	bool answer = false;
	return GDVIRTUAL_CALL(_check, as_machine(machine), slot, answer) ? answer : check_default(machine, slot);
}

String SCMachineCondition::summary() {
	String answer;
	return GDVIRTUAL_CALL(_summary, answer) ? answer : summary_default();
}

bool SCMachineCondition::wants_physics() {
	bool answer = false;
	return GDVIRTUAL_CALL(_wants_physics, answer) ? answer : wants_physics_default();
}

Array SCMachineCondition::rest_signals(SCMachineBase *machine, const Dictionary &slot) {
	Array answer;
	return GDVIRTUAL_CALL(_rest_signals, as_machine(machine), slot, answer) ? answer : rest_signals_default(machine, slot);
}

bool SCMachineCondition::depends_only_on_variables() {
	bool answer = false;
	return GDVIRTUAL_CALL(_depends_only_on_variables, answer) ? answer : depends_only_on_variables_default();
}

PackedStringArray SCMachineCondition::variables_read() {
	PackedStringArray answer;
	return GDVIRTUAL_CALL(_variables_read, answer) ? answer : variables_read_default();
}

PackedStringArray SCMachineCondition::variables_written() {
	PackedStringArray answer;
	return GDVIRTUAL_CALL(_variables_written, answer) ? answer : variables_written_default();
}

bool SCMachineCondition::check_default(SCMachineBase *machine, const Dictionary &slot) {
	(void)machine;
	(void)slot;
	return false;
}

String SCMachineCondition::summary_default() {
	return to_string();
}

bool SCMachineCondition::wants_physics_default() {
	const ClassRow *row = class_row();
	return row != nullptr && row->wants_physics;
}

Array SCMachineCondition::rest_signals_default(SCMachineBase *machine, const Dictionary &slot) {
	(void)machine;
	(void)slot;
	return Array();
}

bool SCMachineCondition::depends_only_on_variables_default() {
	const ClassRow *row = class_row();
	return row != nullptr && row->depends_only_on_variables;
}

PackedStringArray SCMachineCondition::variables_read_default() {
	return naming::variables_read(this);
}

PackedStringArray SCMachineCondition::variables_written_default() {
	return naming::variables_written(this);
}

void SCMachineCondition::read_variables(SCMachineBase *machine) {
	bound_settings.read_into(this, from_variables, typed_in, machine);
}

bool SCMachineCondition::evaluate(SCMachineBase *machine, const Dictionary &slot) {
	// Reading the variables may run a script's setter, which may free the machine.
	const Ref<SCMachineCondition> held(this);
	const uint64_t machine_id = machine->get_instance_id();
	read_variables(machine);
	if (ObjectDB::get_instance(machine_id) == nullptr) {
		return false;
	}
	return check(machine, slot) != invert;
}

template <auto Operation, class... Arguments>
auto SCMachineCondition::for_script(const Variant &m, Arguments... arguments) {
	using Answer = decltype((this->*Operation)(nullptr, arguments...));
	SCMachineBase *machine = script_operations::machine_or_error<Operation>(m);
	return machine != nullptr ? (this->*Operation)(machine, arguments...) : Answer();
}

String SCMachineCondition::shown_summary() {
	const String line = summary_line::shown_line(this);
	return invert ? vformat("Not: %s", line) : line;
}

void SCMachineCondition::validate_setting(const StringName &literal, Dictionary property) const {
	inspector::validate(this, property);
	if (!literal.is_empty() && StringName(property.get("name", StringName())) == literal) {
		const Variant variable = get(StringName(String(literal) + "_variable"));
		if (variable.get_type() != Variant::NIL && !variable.stringify().is_empty()) {
			property["usage"] = int64_t(property.get("usage", 0)) & ~int64_t(PROPERTY_USAGE_EDITOR);
		}
	}
}

bool SCMachineCondition::_get(const StringName &name, Variant &value) const {
	return twins::get(this, name, value);
}

bool SCMachineCondition::_set(const StringName &name, const Variant &value) {
	return twins::set(this, name, value);
}

void SCMachineCondition::_get_property_list(List<PropertyInfo> *list) const {
	twins::list(this, list);
}

void SCMachineCondition::_validate_property(PropertyInfo &property) const {
	inspector::validate(this, property);
}

void SCMachineCondition::_bind_methods() {
	ClassTable<SCMachineCondition> table("A yes or no question, asked by a Check action in a state.");
	table.setting<&SCMachineCondition::invert>("invert", "Ask the question the other way round, so yes becomes no and no becomes yes.");
	table.setting<&SCMachineCondition::wait_for_actions>("wait_for_actions", "Only ask once every action in the state has finished.");
	table.setting<&SCMachineCondition::can_rest>("can_rest", hint::NEITHER_STORED_NOR_SHOWN,
			"True for a question that can answer [method rest_signals] at all, so a Check asking any other every frame does not ask it that too, every frame.");
	table.setting<&SCMachineCondition::display_name>("display_name", "Name shown on the row. Empty uses the condition's type.");
	table.property("from_variables",
			PropertyInfo(Variant::DICTIONARY, "from_variables", PROPERTY_HINT_DICTIONARY_TYPE, "StringName;StringName", PROPERTY_USAGE_STORAGE),
			&SCMachineCondition::set_from_variables, &SCMachineCondition::get_from_variables,
			"Which settings are read from a variable of the machine, and from which: setting name to variable name.");
	bind_operations();
	ClassDB::bind_method(script_operations::named<&SCMachineCondition::read_variables>("read_variables", "m"),
			&SCMachineCondition::for_script<&SCMachineCondition::read_variables>);
	ClassDB::bind_method(script_operations::named<&SCMachineCondition::evaluate>("evaluate", "m", "slot"),
			&SCMachineCondition::for_script<&SCMachineCondition::evaluate, const Dictionary &>);
	ClassDB::bind_method(D_METHOD("shown_summary"), &SCMachineCondition::shown_summary);
	ClassDB::bind_method(D_METHOD("validate_setting", "literal", "property"), &SCMachineCondition::validate_setting);
	static_facilities::bind_to_condition();
}

void SCMachineCondition::bind_operations() {
	ClassDB::bind_method(script_operations::named<&SCMachineCondition::check>("check", "m", "slot"),
			&SCMachineCondition::for_script<&SCMachineCondition::check, const Dictionary &>);
	ClassDB::bind_method(D_METHOD("summary"), &SCMachineCondition::summary);
	ClassDB::bind_method(D_METHOD("wants_physics"), &SCMachineCondition::wants_physics);
	ClassDB::bind_method(script_operations::named<&SCMachineCondition::rest_signals>("rest_signals", "m", "slot"),
			&SCMachineCondition::for_script<&SCMachineCondition::rest_signals, const Dictionary &>);
	ClassDB::bind_method(D_METHOD("depends_only_on_variables"), &SCMachineCondition::depends_only_on_variables);
	ClassDB::bind_method(D_METHOD("variables_read"), &SCMachineCondition::variables_read);
	ClassDB::bind_method(D_METHOD("variables_written"), &SCMachineCondition::variables_written);

	ClassDB::bind_method(script_operations::named<&SCMachineCondition::check_default>("check_default", "m", "slot"),
			&SCMachineCondition::for_script<&SCMachineCondition::check_default, const Dictionary &>);
	ClassDB::bind_method(D_METHOD("summary_default"), &SCMachineCondition::summary_default);
	ClassDB::bind_method(D_METHOD("wants_physics_default"), &SCMachineCondition::wants_physics_default);
	ClassDB::bind_method(script_operations::named<&SCMachineCondition::rest_signals_default>("rest_signals_default", "m", "slot"),
			&SCMachineCondition::for_script<&SCMachineCondition::rest_signals_default, const Dictionary &>);
	ClassDB::bind_method(D_METHOD("depends_only_on_variables_default"), &SCMachineCondition::depends_only_on_variables_default);
	ClassDB::bind_method(D_METHOD("variables_read_default"), &SCMachineCondition::variables_read_default);
	ClassDB::bind_method(D_METHOD("variables_written_default"), &SCMachineCondition::variables_written_default);

	GDVIRTUAL_BIND(_check, "m", "slot");
	GDVIRTUAL_BIND(_summary);
	GDVIRTUAL_BIND(_wants_physics);
	GDVIRTUAL_BIND(_rest_signals, "m", "slot");
	GDVIRTUAL_BIND(_depends_only_on_variables);
	GDVIRTUAL_BIND(_variables_read);
	GDVIRTUAL_BIND(_variables_written);
}
