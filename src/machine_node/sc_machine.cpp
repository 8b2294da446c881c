#include "machine_node/sc_machine.hpp"

#include "machine/companion_scripts.hpp"
#include "machine/debugger_channel.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine_node/design_hooks.hpp"
#include "machine_node/shared_machine_data.hpp"
#include "machine_node/values_setup.hpp"
#include "settings/object_arguments.hpp"

#include <godot_cpp/variant/callable_method_pointer.hpp>

TypedArray<SCMachineState> SCMachine::get_states() const {
	if (!states.is_made() && started_with.is_valid()) {
		states = started_with->state_list.duplicate();
	}
	return states.get();
}

TypedArray<SCMachineVariable> SCMachine::get_variables() const {
	if (!variables.is_made() && started_with.is_valid()) {
		variables = started_with->variable_list.duplicate();
	}
	return variables.get();
}

void SCMachine::_validate_property(PropertyInfo &property) const {
	if (property.name == StringName("values")) {
		show_while_running(property);
	}
}

void SCMachine::set_physics_tick(bool on) {
	physics_tick = on;
	run().set_setting(MachineNames::shared().physics_tick, on);
}

void SCMachine::set_debug_log(bool on) {
	debug_log = on;
	run().set_setting(MachineNames::shared().debug_log, on);
}

void SCMachine::set_target(Node *node) {
	target_id = node != nullptr ? ObjectID(node->get_instance_id()) : ObjectID();
}

void SCMachine::take_target(const Variant &given) {
	bool fits = true;
	Node *node = object_arguments::taken<Node>(given, "set_target", 1, fits);
	if (fits) {
		set_target(node);
	}
}

void SCMachine::set_values(const Dictionary &values) {
	run().set_setting(MachineNames::shared().values, values);
}

Dictionary SCMachine::get_values() const {
	return run().values_dictionary();
}

Dictionary SCMachine::get_limits() const {
	return run().values.limits_dictionary();
}

Dictionary SCMachine::get_limited_by() const {
	return run().values.limited_by_dictionary();
}

Dictionary SCMachine::get_shares() const {
	return run().values.shares_dictionary();
}

bool SCMachine::holds_whole(const StringName &variable_name) {
	return MachineValues::holds_whole(this, variable_name);
}

void SCMachine::learn_limits() {
	MachineValues::learn_limits(this, MachineValues::declared_in(get_variables()));
}

void SCMachine::start_attributes() {
	MachineValues::start_attributes(this, MachineValues::declared_in(get_variables()));
}

void SCMachine::note_scene_start() {
	MachineValues::note_scene_start(this);
}

Dictionary SCMachine::global_values() {
	return SharedMachineData::shared().globals;
}

void SCMachine::report_actions() {
	DebuggerChannel::actions(run());
}

void SCMachine::report_values() {
	DebuggerChannel::values(run());
}

PackedStringArray SCMachine::_get_configuration_warnings() const {
	return design_hooks::warnings_of != nullptr ? design_hooks::warnings_of(const_cast<SCMachine *>(this)) : PackedStringArray();
}

void SCMachine::set_machine_template(const Ref<SCMachineTemplate> &given) {
	machine_template = given;
	if (setting_edits::in_editor) {
		update_configuration_warnings();
	}
#ifdef DEBUG_ENABLED
	template_waits = given.is_valid() && is_running();
	if (template_waits) {
		// Not at once: whoever changes it starts the machine anew in the next line, as a rule.
		callable_mp(this, &SCMachine::tell_of_waiting_template).call_deferred();
	}
#endif
}

void SCMachine::tell_of_waiting_template() {
	if (template_waits && machine_template.is_valid() && is_running()) {
		MakerWarnings::once_for(this, "template while running",
				vformat("Machine on %s was given another template while it runs, and goes on with the one it started with. Call start() to begin with the new "
						"one.",
						name_in_messages()));
	}
}

void SCMachine::_bind_methods() {
	ClassTable<SCMachine> table("A state machine for the node it is put under: a door, a lift, an enemy, a camera. Give it states of its own, or a template "
								"that any number of machines share, and it runs while the game plays.");
	table.property("template", PropertyOf<Ref<SCMachineTemplate>>::info("template"), &SCMachine::set_machine_template, &SCMachine::get_machine_template,
			"The machine to run, saved as a file. When it is set, its states, its initial state and its variables are used in place of the ones below.");
	table.setting<&SCMachine::target_path>("target_path", "The node the machine works on. Empty means the node it is put under.");
	table.setting<&SCMachine::autostart>("autostart", "Start by itself as the scene begins. Off, it waits until its start method is called.");
	table.property("physics_tick", PropertyInfo(Variant::BOOL, "physics_tick"), &SCMachine::set_physics_tick, &SCMachine::get_physics_tick,
			"Run the actions of every state in the physics step, as often each second as the project's physics, instead of once for every frame drawn.",
			nullptr, "on");
	table.property("debug_log", PropertyInfo(Variant::BOOL, "debug_log"), &SCMachine::set_debug_log, &SCMachine::get_debug_log,
			"Print every change of state and every event to the Output panel.", nullptr, "on");
	table.property("states", PropertyOf<TypedArray<SCMachineState>>::info("states"), &SCMachine::set_states, &SCMachine::get_states,
			"The states of this machine. States nested inside another belong to that one.");
	table.setting<&SCMachine::initial_state>("initial_state", "The state the machine starts in.");
	table.property("variables", PropertyOf<TypedArray<SCMachineVariable>>::info("variables"), &SCMachine::set_variables, &SCMachine::get_variables,
			"The named values this machine carries, and what each starts as.");
	table.property("handed_values", PropertyInfo(Variant::DICTIONARY, "handed_values", PROPERTY_HINT_TYPE_STRING, "21:;0:"), &SCMachine::set_handed_values,
			&SCMachine::get_handed_values,
			"Values given to this machine from outside before it starts, as Run Template does. Each must be of the kind its variable was declared with, and a "
			"global variable is left as it is.");
	table.property("starting_values", PropertyInfo(Variant::DICTIONARY, "starting_values", PROPERTY_HINT_TYPE_STRING, "21:;0:"),
			&SCMachine::set_starting_values, &SCMachine::get_starting_values,
			"Values that this one machine starts with in place of the declared ones, by the variable's name. They are taken as they are.");
	table.property("target", PropertyInfo(Variant::OBJECT, "target", PROPERTY_HINT_NODE_TYPE, "Node", PROPERTY_USAGE_NONE, "Node"), &SCMachine::take_target,
			&SCMachine::target_node, "The node the machine works on, found by Target Path as the machine becomes ready.", nullptr, "node");
	table.property("values", PropertyInfo(Variant::DICTIONARY, "values", PROPERTY_HINT_NONE, "", PROPERTY_USAGE_NONE), &SCMachine::set_values,
			&SCMachine::get_values, "The values of all variables at this moment, by name. It is a copy: use set_value to change one of them.");

	ClassDB::bind_method(D_METHOD("_get_system_connections"), &SCMachine::get_system_connections);
	ClassDB::bind_method(D_METHOD("_get_limits"), &SCMachine::get_limits);
	ClassDB::bind_method(D_METHOD("_get_limited_by"), &SCMachine::get_limited_by);
	ClassDB::bind_method(D_METHOD("_get_shares"), &SCMachine::get_shares);
	ADD_PROPERTY(PropertyInfo(Variant::ARRAY, "_system_connections", PROPERTY_HINT_NONE, "", PROPERTY_USAGE_NONE), "", "_get_system_connections");
	ADD_PROPERTY(PropertyInfo(Variant::DICTIONARY, "_limits", PROPERTY_HINT_NONE, "", PROPERTY_USAGE_NONE), "", "_get_limits");
	ADD_PROPERTY(PropertyInfo(Variant::DICTIONARY, "_limited_by", PROPERTY_HINT_NONE, "", PROPERTY_USAGE_NONE), "", "_get_limited_by");
	ADD_PROPERTY(PropertyInfo(Variant::DICTIONARY, "_shares", PROPERTY_HINT_NONE, "", PROPERTY_USAGE_NONE), "", "_get_shares");

	ADD_SIGNAL(MethodInfo("state_changed", PropertyInfo(Variant::OBJECT, "current", PROPERTY_HINT_RESOURCE_TYPE, "SCMachineState"),
			PropertyInfo(Variant::OBJECT, "previous", PROPERTY_HINT_RESOURCE_TYPE, "SCMachineState")));
	ADD_SIGNAL(MethodInfo("event_sent", PropertyInfo(Variant::STRING_NAME, "event_name"),
			PropertyInfo(Variant::NIL, "data", PROPERTY_HINT_NONE, "", PROPERTY_USAGE_DEFAULT | PROPERTY_USAGE_NIL_IS_VARIANT)));
	ADD_SIGNAL(MethodInfo("state_finished", PropertyInfo(Variant::OBJECT, "state", PROPERTY_HINT_RESOURCE_TYPE, "SCMachineState")));
	BIND_CONSTANT(LOOP_INCREMENT_LIMIT);

	ClassDB::bind_method(D_METHOD("start"), &SCMachine::start);
	ClassDB::bind_method(D_METHOD("_start_from", "record"), &SCMachine::start_from);
	ClassDB::bind_method(D_METHOD("_written_down"), &SCMachine::written_down);
	ClassDB::bind_method(D_METHOD("all_states"), &SCMachine::all_states);
	bind_scene_life();
	bind_values();
	bind_system_events();
	bind_debugging();
}

void SCMachine::bind_scene_life() {
	using object_arguments::guarded;
	ClassDB::bind_method(D_METHOD("_switched_off"), &SCMachine::is_switched_off);
	ClassDB::bind_static_method(
			"SCMachine", D_METHOD("move_node", "node", "parent", "keep_global_transform"), guarded<&SCMachine::move_node>("move_node"), DEFVAL(true));
	ClassDB::bind_method(D_METHOD("_let_go"), &SCMachine::let_go);
	ClassDB::bind_method(D_METHOD("_resume"), &SCMachine::resume);
	ClassDB::bind_method(D_METHOD("_join_the_scene"), &SCMachine::join_the_scene);
	ClassDB::bind_method(D_METHOD("_leave_the_scene"), &SCMachine::leave_the_scene);
	ClassDB::bind_method(D_METHOD("_register_globals", "design"), &SCMachine::register_globals);
	ClassDB::bind_method(D_METHOD("_core_on_stopped"), &SCMachine::on_stopped);
	ClassDB::bind_method(D_METHOD("_core_after_step", "step"), &SCMachine::after_step);

	ClassDB::bind_method(D_METHOD("node_at", "path"), &SCMachine::node_at);
	ClassDB::bind_static_method("SCMachine", D_METHOD("machines_in_the_scene"), &SCMachine::machines_in_the_scene);
	ClassDB::bind_static_method("SCMachine", D_METHOD("machines_running"), &SCMachine::machines_running);
	ClassDB::bind_static_method("SCMachine", D_METHOD("machine_of", "node"), guarded<&SCMachine::machine_of>("machine_of"));
	ClassDB::bind_static_method("SCMachine", D_METHOD("machine_of_or_above", "node"), guarded<&SCMachine::machine_of_or_above>("machine_of_or_above"));
	ClassDB::bind_method(D_METHOD("broadcast_event", "group", "event_name", "data"), &SCMachine::broadcast_event, DEFVAL(Variant()));
	ClassDB::bind_static_method("SCMachine", D_METHOD("is_global_event", "event_name"), &SCMachine::is_global_event);

	ClassDB::bind_method(D_METHOD("_ask_the_agent", "agent", "body"), &SCMachine::_ask_the_agent);
	ClassDB::bind_method(D_METHOD("_on_velocity_computed", "safe", "agent", "body"), &SCMachine::on_velocity_computed);
}

void SCMachine::bind_values() {
	ClassDB::bind_method(D_METHOD("holds_whole", "variable_name"), &SCMachine::holds_whole);
	ClassDB::bind_static_method("SCMachine", D_METHOD("same_kind", "value", "was"), &MachineValues::same_kind);
	ClassDB::bind_static_method("SCMachine", D_METHOD("_is_global_in", "list", "variable_name"), &MachineValues::is_global_in);
	ClassDB::bind_static_method("SCMachine", D_METHOD("_holds_node_in", "in_variables", "named"), &MachineValues::holds_node_in);
	ClassDB::bind_static_method("SCMachine", D_METHOD("_bound_of", "typed"), &MachineValues::bound_of);
	ClassDB::bind_static_method("SCMachine", D_METHOD("is_global_value", "variable_name"), &MachineValues::is_global_value);
	ClassDB::bind_static_method("SCMachine", D_METHOD("global_value", "variable_name", "fallback"), &MachineValues::global_value, DEFVAL(Variant()));
	ClassDB::bind_static_method("SCMachine", D_METHOD("set_global_value", "variable_name", "value"), &MachineValues::set_global_value);
	ClassDB::bind_static_method("SCMachine", D_METHOD("global_names"), &MachineValues::global_names);
	ClassDB::bind_static_method("SCMachine", D_METHOD("_core_global_values"), &SCMachine::global_values);
	ClassDB::bind_static_method("SCMachine", D_METHOD("put_globals_back", "keep"), &MachineValues::put_globals_back);
	ClassDB::bind_method(D_METHOD("_note_scene_start"), &SCMachine::note_scene_start);
	ClassDB::bind_method(D_METHOD("_learn_limits"), &SCMachine::learn_limits);
	ClassDB::bind_method(D_METHOD("_start_attributes"), &SCMachine::start_attributes);
}

void SCMachine::bind_system_events() {
	ClassDB::bind_method(D_METHOD("_connect_system_events"), &SCMachine::connect_system_events);
	ClassDB::bind_method(D_METHOD("_disconnect_system_events"), &SCMachine::disconnect_system_events);
	ClassDB::bind_method(D_METHOD("_listen_to_system_event", "wanted"), &SCMachine::listen_to_system_event);
	ClassDB::bind_method(D_METHOD("_hear", "source", "signal_name", "handler"), &SCMachine::hear);
	ClassDB::bind_static_method("SCMachine", D_METHOD("_pickable", "node"), &SCMachine::make_pickable);
	ClassDB::bind_method(D_METHOD("_on_visibility_changed", "wanted"), &SCMachine::on_visibility_changed);
	ClassDB::bind_method(D_METHOD("_on_mouse_button", "event", "wanted"), &SCMachine::on_mouse_button);
	ClassDB::bind_method(D_METHOD("_system_event", "event_name", "data"), &SCMachine::core_system_event);
}

void SCMachine::bind_debugging() {
	ClassDB::bind_static_method("SCMachine", D_METHOD("_listen_for_the_editor"), &DebuggerChannel::listen);
	ClassDB::bind_static_method("SCMachine", D_METHOD("_on_editor_message", "message", "data"), &DebuggerChannel::take_message);
	ClassDB::bind_static_method("SCMachine", D_METHOD("_start_reporting"), &DebuggerChannel::start_reporting);
	ClassDB::bind_static_method("SCMachine", D_METHOD("_report_watched"), &DebuggerChannel::report_watched);
	ClassDB::bind_method(D_METHOD("_report_actions"), &SCMachine::report_actions);
	ClassDB::bind_method(D_METHOD("_report_values"), &SCMachine::report_values);
}
