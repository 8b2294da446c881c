#pragma once

// A whole machine saved as a file: its states, where it starts, its variables and declared events.

#include "design/sc_machine_event.hpp"
#include "design/sc_machine_note.hpp"
#include "design/sc_machine_parallel_state.hpp"
#include "design/sc_machine_state.hpp"
#include "design/sc_machine_variable.hpp"
#include "design/template_reading.hpp"
#include "settings/class_table.hpp"

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/templates/hash_set.hpp>

using namespace godot;

class SCMachineTemplate : public Resource {
	GDCLASS(SCMachineTemplate, Resource)
	SC_FIELDS

public:
	String display_name;
	String description;
	Ref<SCMachineState> initial_state;
	TypedArray<SCMachineState> states;
	TypedArray<SCMachineVariable> variables;
	TypedArray<SCMachineEvent> events;
	int64_t loop_increment_limit = 50;
	TypedArray<SCMachineNote> notes;
	bool carries_over = false;
	// What its states need has been loaded; of this run of the game, so it is no setting.
	bool warmed_up = false;

	TypedArray<StringName> global_event_names() const;
	Ref<SCMachineEvent> event_named(const StringName &wanted) const;
	// Every state, parents before children, each once.
	TypedArray<SCMachineState> all_states() const;
	Ref<SCMachineState> parent_of(const Ref<SCMachineState> &state) const;
	Ref<SCMachineParallelState> parallel_state_of(const Ref<SCMachineState> &state) const;
	// Destinations of transitions that name no state.
	PackedStringArray missing_state_names() const;
	String _to_string() const;
	// What this comes down to as it is now, for a machine that starts.
	Held<TemplateReading> reading() const;

	void collect_once(const Ref<SCMachineState> &state, const Array &into, const Dictionary &seen) const;
	void collect(const Ref<SCMachineState> &state, const Array &into) const;

protected:
	static void _bind_methods();

private:
	mutable Held<TemplateReading> latest_reading;
};
