#pragma once

// What a template comes down to for the machines that start with it: its states by name, the events they
// wait for, its variables. Read once, shared by every machine of the template, and read anew when the
// template is no longer the one it was read from. SCMachineTemplate owns the latest.

#include "machine/array_stamp.hpp"
#include "machine/design_index.hpp"
#include "machine/held.hpp"

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/typed_array.hpp>

using namespace godot;

class SCMachineEvent;
class SCMachineParallelState;
class SCMachineState;
class SCMachineTemplate;
class SCMachineTransition;
class SCMachineVariable;

class TemplateReading {
	struct ReadTransition {
		const SCMachineTransition *transition = nullptr;
		StringName event;
	};
	struct ReadRegion {
		const SCMachineParallelState *region = nullptr;
		ArrayStamp states;
	};
	struct ReadState {
		const SCMachineState *state = nullptr;
		StringName name;
		ArrayStamp transitions;
		ArrayStamp sub_states;
		ArrayStamp regions;
		LocalVector<ReadTransition> each_transition;
		LocalVector<ReadRegion> each_region;

		void read(const SCMachineState *from);
		bool is_as_read() const;
	};
	struct ReadEvent {
		const SCMachineEvent *event = nullptr;
		StringName name;
		bool is_global = false;
	};

	Ref<SCMachineState> initial_state;
	ArrayStamp top_states;
	ArrayStamp variable_stamp;
	ArrayStamp events;
	// Parents before children: what has been found unchanged keeps what comes after it alive.
	LocalVector<ReadState> each_state;
	LocalVector<ReadEvent> each_event;

public:
	uint32_t holders = 0;

	DesignIndex index;
	// The distinct events that the transitions wait for, and those that every machine hears.
	LocalVector<StringName> listening;
	LocalVector<StringName> global_events;
	// The variables, without what is no variable.
	LocalVector<Ref<SCMachineVariable>> variables;
	// The template's lists as they were.
	TypedArray<SCMachineState> state_list;
	TypedArray<SCMachineVariable> variable_list;

	explicit TemplateReading(const SCMachineTemplate &from);
	// A design may be edited in place at any time, with no setter called: every list and every name that
	// was read is looked at.
	bool is_of(const SCMachineTemplate &now) const;
};
