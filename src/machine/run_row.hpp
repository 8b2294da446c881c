#pragma once

// One entered state of one running machine. Rows are made by entering, marked dead by leaving and
// recycled once no engine work is under way, so a pointer to a row stays readable through any call.
// A recycled row keeps what belongs to its state and not to the visit, so that a machine which goes
// back and forth finds its rows ready.

#include "machine/compiled_design.hpp"
#include "machine/inline_list.hpp"

#include <godot_cpp/classes/tween.hpp>
#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/variant/callable.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/node_path.hpp>

using namespace godot;

class SCMachineBase;

// What one action remembers while its state is entered.
struct ActionRun {
	// Nil until asked for, then the action's own Dictionary.
	Variant slot;
	// Time gathered toward the update interval.
	double interval_sum = 0.0;
	bool finished = false;
	bool started = false;
};

struct TimerRecord {
	// Null while the machine is outside the tree, where no tween can be made.
	Ref<Tween> tween;
	double seconds = 0.0;
	Callable then;
	bool real_time = false;
};

// What a tween does to a property, written down because the tween itself does not tell.
struct PropertyTween {
	// Makes the tween anew, `elapsed` seconds on its way: set by whoever knows how properties are moved.
	static void (*start_again)(SCMachineBase *machine, int index, const PropertyTween &tweened, double elapsed);

	ObjectID node;
	NodePath property;
	Variant from;
	Variant to;
	double seconds = 0.0;
	int transition = 0;
	int ease = 0;
};

struct KeptTween {
	Ref<Tween> tween;
	// Without a node for a tween that does something else.
	PropertyTween does;
	bool finishes = false;
};

struct SignalRest {
	ObjectID source;
	StringName signal_name;
	Callable call;
};

struct Rest {
	LocalVector<SignalRest> signals;
	// A job of the fast lane, negative when the rest is on signals.
	int64_t job = -1;
	ObjectID lane;
};

using ActionList = InlineList<int, 2>;

struct RunRow {
	// First what a frame reads.
	bool live = false;
	bool sub_states_finished = false;
	bool state_finished_sent = false;
	int slot_in_parent = 0;
	const ActionTable *table = nullptr;
	LocalVector<ActionRun> runs;
	// Indices of the actions to call, frame first, physics second.
	ActionList lanes[2];

	RunRow *parent = nullptr;
	InlineList<RunRow *, 1> children;
	int64_t serial = 0;
	double entered_at = 0.0;
	Ref<Resource> state;
	// The number of the index that keeps the state as well, 0 when that is not known.
	uint64_t kept_by_index = 0;
	// The same state when it is the compiled class, whose members are read directly.
	SCMachineState *compiled = nullptr;
	const StatePlan *plan = nullptr;
	Ref<Resource> previous_state;
	StringName entered_by;
	HashMap<int, TimerRecord> timers;
	HashMap<int, KeptTween> kept_tweens;
	HashMap<int, Rest> rests;

	int action_count() const { return int(runs.size()); }
	bool has_children() const { return !children.is_empty(); }
	bool all_finished() const;
	bool all_finished_except(int index) const;
	bool rests_at(int index) const { return rests.has(index); }
	RunRow *deepest_first();
	// True when this row or one above it runs in a branch of a parallel state other than its first.
	bool in_a_branch() const;
	// True also for the first of such branches.
	bool beside_others() const;
	void stand_for(Resource *entered);
	// Ends the visit.
	void clear();
	// Lets go of what is kept for the next visit as well.
	void forget_state();
};

// The live rows of a machine, in the order in which they are called.
using RowList = InlineList<RunRow *, 4>;

class RowPool {
	static constexpr uint32_t KEPT = 32;
	// With fewer than this many, another state gets a row of its own.
	static constexpr uint32_t ENOUGH = 4;
	LocalVector<RunRow *> dead;
	LocalVector<RunRow *> free;

	void recycle_dead();

public:
	~RowPool();
	bool has_dead() const { return !dead.is_empty(); }
	// A row that stands for this state.
	RunRow *take(Resource *state);
	void retire(RunRow *row) { dead.push_back(row); }
	// Only while no engine work is under way: until then a dead row is still read.
	void recycle() {
		if (!dead.is_empty()) {
			recycle_dead();
		}
	}
	// The rows that wait to be used again hold on to no state from here on.
	void forget_states();
};
