#pragma once

// What a state comes down to once it has been read: a plan (its transitions) and an action table
// (its actions with their flags). One record per state in the whole process, shared by every machine
// that uses the state, and made anew when the state's array is no longer the one it was read from.

#include "machine/array_stamp.hpp"

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/string_name.hpp>

using namespace godot;

class SCMachineAction;
class SCMachineState;
struct NativeEntry;

struct TransitionRow {
	StringName event;
	StringName to_state;
	StringName store_data_in;
};

struct StatePlan {
	// The transitions it was read from.
	ArrayStamp source;
	// There is a newer one.
	bool retired = false;

	LocalVector<TransitionRow> rows;
	bool has_finished = false;
	bool end_state = false;
	bool pause_here = false;
	StringName name;
};

struct ActionEntry {
	// Null for an element that is no action; it keeps its place in the list and is skipped.
	Object *object = nullptr;
	// The same object when it is the compiled class, whose members are read directly.
	SCMachineAction *compiled = nullptr;
	// Where that says whether it is switched off, which may change at any time.
	const bool *disabled = nullptr;
	const NativeEntry *runtime = nullptr;
	bool wants_physics = false;
	bool needs_every_tick = false;
	bool works_after_finishing = false;
	bool has_exit = false;
	// Of an action without a runtime, which would finish itself.
	bool finishes_as_it_starts = false;
};

struct ActionTable {
	// The actions it was read from.
	ArrayStamp source;
	bool retired = false;
	// A copy of the list, which keeps the actions alive while a run row points at this table.
	Array kept;

	LocalVector<ActionEntry> actions;
	LocalVector<int> exit_rows;
	HashMap<StringName, LocalVector<int>> watches;
};

// The process-wide tables. A stale record is retired, not freed, because the rows of running
// machines may still point at it; it goes when its state does, or with the library.
class CompiledDesign {
public:
	// `compiled` is the same state when it is the compiled class. `known` is what was answered before, or null: as long as
	// it holds, nothing has to be looked up.
	static const StatePlan *plan_of(Resource *state, const SCMachineState *compiled, const StatePlan *known);
	static const ActionTable *actions_of(Resource *state, const SCMachineState *compiled, const ActionTable *known);
	// Called as a state is destroyed. Rows hold their state, so no row can point here any more.
	static void forget_state(uint64_t state_id);
	static void free_shared();
};
