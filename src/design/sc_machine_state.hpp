#pragma once

// One state of a design: what it does while active, the ways out of it, and the states inside it.

#include "settings/class_table.hpp"

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/templates/hash_set.hpp>

using namespace godot;

class SCMachineAction;
class SCMachineParallelState;
class SCMachineTransition;

class SCMachineState : public Resource {
	GDCLASS(SCMachineState, Resource)
	SC_FIELDS

public:
	StringName state_name = "State";
	TypedArray<SCMachineAction> actions;
	TypedArray<SCMachineTransition> transitions;
	TypedArray<SCMachineState> sub_states;
	TypedArray<SCMachineParallelState> parallel_states;
	Ref<SCMachineState> start_sub_state;
	bool is_end_state = false;
	bool pause_here = false;
	Vector2 graph_position;
	Color graph_color = Color(0, 0, 0, 0);
	Ref<RefCounted> run_facts;

	SCMachineState();
	~SCMachineState() override;

	// Whether `state` is this one or lies anywhere below it.
	bool contains(const Ref<Resource> &state) const;
	bool has_states_inside() const { return !sub_states.is_empty() || !parallel_states.is_empty(); }
	Ref<SCMachineState> first_sub_state() const;
	// The state each inner region starts in: one entry per parallel region, else the first sub-state alone.
	TypedArray<SCMachineState> inner_starts() const;
	// The region that `state` lies in at any depth, -1 when it does not lie in this state.
	int64_t inner_slot_of(const Ref<Resource> &state) const;
	String _to_string() const { return state_name; }

	// The start among `states`: `wanted` when it is one of them, else the first that is a state.
	static Ref<SCMachineState> start_among(const Array &states, const Ref<SCMachineState> &wanted);

protected:
	static void _bind_methods();
	void _validate_property(PropertyInfo &property) const;

private:
	bool contains_within(const Ref<Resource> &state, HashSet<uint64_t> &visited) const;
};
