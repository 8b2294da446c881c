// Entering and leaving: how a machine gets from state to state, stops and is carried over.

#include "design/sc_machine_state.hpp"
#include "machine/debugger_channel.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

#include <utility>

namespace {

Array inner_starts_of(Resource *state, const SCMachineState *compiled) {
	if (compiled != nullptr) {
		return compiled->inner_starts();
	}
	const StringName &method = MachineNames::shared().inner_starts;
	return state->has_method(method) ? Array(state->call(method)) : Array();
}

int inner_slot_of(Resource *state, const SCMachineState *compiled, Resource *inner) {
	if (compiled != nullptr) {
		// Nearly always it is one of the sub-states, and no need to search what lies in them.
		const bool is_sub_state = compiled->parallel_states.is_empty() && ArrayStamp::lists(compiled->sub_states, inner->get_instance_id());
		return is_sub_state ? 0 : int(compiled->inner_slot_of(inner));
	}
	const StringName &method = MachineNames::shared().inner_slot_of;
	return state->has_method(method) ? int(state->call(method, inner)) : -1;
}

String name_of(const Resource *state) {
	return state != nullptr ? String(StringName(state->get(MachineNames::shared().state_name))) : String();
}

bool lies_above(const RunRow *row, const Resource *state) {
	for (; row != nullptr; row = row->parent) {
		if (row->state.ptr() == state) {
			return true;
		}
	}
	return false;
}

} // namespace

void MachineRun::go_to_state(const Ref<Resource> &state) {
	const Ref<Resource> kept = state;
	go_from_here(kept.ptr());
}

void MachineRun::restart_state(const Ref<Resource> &state) {
	const Ref<Resource> kept = state;
	begin_again(kept.ptr());
}

// Whoever calls this keeps the state.
void MachineRun::go_from_here(Resource *state) {
	if (state == nullptr || state == current || !running || leaving > 0) {
		return;
	}
	Busy keep(*this);
	if (!may_enter(state)) {
		return;
	}
	change_depth++;
	change_state(state);
	changed_state();
}

void MachineRun::begin_again(Resource *state) {
	if (state == nullptr || row_in(state) == nullptr) {
		go_from_here(state);
		return;
	}
	if (!running || leaving > 0) {
		return;
	}
	Busy keep(*this);
	if (!may_enter(state)) {
		return;
	}
	change_depth++;
	forget_event();
	// What has just been asked may have left the state.
	if (RunRow *row = row_in(state)) {
		ScratchLists<RunRow *>::Borrowed fresh(RunScratch::shared().rows);
		restart_row(row, fresh.list);
	}
	changed_state();
}

void MachineRun::changed_state() {
	change_depth--;
	if (change_depth == 0) {
		dispatch_postponed();
	}
}

bool MachineRun::go_to(const StringName &state_name) {
	const Ref<Resource> state = find_state(state_name);
	if (state.is_null() || !running) {
		return false;
	}
	go_from_here(state.ptr());
	return true;
}

// Counts this entry, and stops a machine whose states lead round in a circle.
bool MachineRun::may_enter(Resource *target) {
	const int64_t entered = loop_limiter.count_entry(GameClocks::frame_serial());
	if (entered == 0) {
		return true;
	}
	if (node != nullptr) {
		UtilityFunctions::push_error(vformat(
				"Machine on %s entered %d states in one frame, which means its states lead straight back to one another, so it has stopped. The last was %s. "
				"Look for states whose FINISHED or events lead back round with nothing to wait for. A Wait or a Next Frame Event in one of them breaks the "
				"circle. A template that really does pass through that many states in one frame can raise Loop Increment Limit on its template.",
				node->name_in_messages(), entered, name_of(target)));
	}
	stop();
	return false;
}

void MachineRun::progress_made(uint64_t walker, int64_t most) {
	loop_limiter.progress_made(walker, most, GameClocks::frame_serial());
}

// A change that no event has caused has no event to tell of.
void MachineRun::forget_event() {
	if (!keep_event) {
		events.forget_last();
	}
	keep_event = false;
}

void MachineRun::change_state(Resource *target) {
	// The states on the way are kept by this, whatever the machine does meanwhile.
	const DesignIndex held = index;
	forget_event();
	ScratchLists<RunRow *>::Borrowed fresh(RunScratch::shared().rows);
	ScratchLists<Resource *>::Borrowed way(RunScratch::shared().states);
	const LocalVector<Resource *> &path = way.list;
	index.path_to(target, way.list);
	const Targets targets = { &target, 1 };

	if (root == nullptr || !root->live || root->state.ptr() != path[0]) {
		enter_as_root(path[0], targets, fresh.list);
		if (!fresh.list.is_empty()) {
			finish_entering(fresh.list, nullptr);
		}
		return;
	}

	Ref<Resource> previous;
	RunRow *at = root;
	for (uint32_t i = 1; i < path.size(); i++) {
		const int slot = inner_slot_of(at->state.ptr(), at->compiled, path[i]);
		if (slot < 0 || slot >= int(at->children.size())) {
			return;
		}
		RunRow *child = at->children[slot];
		if (child != nullptr && child->live && child->state.ptr() == path[i]) {
			at = child;
			continue;
		}
		if (child != nullptr && child->live) {
			if (child->beside_others()) {
				previous = child->deepest_first()->state;
			}
			leave_row(child);
			detach_and_retire(child);
			if (act_on_pending() || !running || !at->live) {
				return;
			}
		}
		enter_row(path[i], at, slot, targets, fresh.list);
		break;
	}
	if (!fresh.list.is_empty()) {
		finish_entering(fresh.list, previous.ptr());
	}
}

void MachineRun::enter_as_root(Resource *top, const Targets &targets, LocalVector<RunRow *> &fresh) {
	if (root != nullptr) {
		RunRow *former = root;
		leave_row(former);
		detach_and_retire(former);
		if (act_on_pending() || !running) {
			return;
		}
	}
	enter_row(top, nullptr, 0, targets, fresh);
}

// What survives is the answer a Check last gave: it must not send its event again for nothing.
void MachineRun::restart_row(RunRow *row, LocalVector<RunRow *> &fresh) {
	const StringName &check_last = MachineNames::shared().check_last;
	const Ref<Resource> state = row->state;
	const Ref<Resource> previous = row->in_a_branch() ? row->deepest_first()->state : Ref<Resource>();
	RunRow *parent = row->parent;
	const int slot = row->slot_in_parent;
	// As they stand before anything is left.
	LocalVector<Dictionary> answers;
	for (const ActionRun &action : row->runs) {
		const Dictionary memory = action.slot.get_type() == Variant::DICTIONARY ? Dictionary(action.slot) : Dictionary();
		Dictionary kept;
		if (memory.has(check_last)) {
			kept[check_last] = memory[check_last];
		}
		answers.push_back(kept);
	}
	leave_row(row);
	detach_and_retire(row);
	if (act_on_pending() || !running || (parent != nullptr && !parent->live)) {
		return;
	}
	RunRow *again = enter_row(state.ptr(), parent, slot, Targets(), fresh);
	if (again == nullptr) {
		return;
	}
	for (uint32_t i = 0; i < answers.size() && i < again->runs.size(); i++) {
		if (!answers[i].is_empty()) {
			again->runs[i].slot = answers[i];
		}
	}
	finish_entering(fresh, previous.ptr());
}

// Whoever calls this keeps the state until it has been entered.
RunRow *MachineRun::enter_row(Resource *state, RunRow *parent, int slot, const Targets &targets, LocalVector<RunRow *> &fresh) {
	// Reading a state asks its actions about themselves, which may be a game's script: if that, or the
	// reading of a state beside this one, has stopped the machine or entered something else, its word
	// stands and this entry is given up.
	const int64_t serial_before = serial_counter;
	RunRow *row = rows.take(state);
	row->table = CompiledDesign::actions_of(state, row->compiled, row->table);
	row->plan = CompiledDesign::plan_of(state, row->compiled, row->plan);
	Variant starts;
	// Asked anew each time: a state may be given its first sub-states long after it was compiled.
	if (row->compiled == nullptr || row->compiled->has_states_inside()) {
		starts = inner_starts_of(state, row->compiled);
	}
	const RunRow *there = nullptr;
	bool given_up = serial_counter != serial_before || !running || (parent != nullptr && !parent->live);
	if (!given_up) {
		there = parent != nullptr ? parent->children[slot] : root;
		given_up = there != nullptr && there->live;
	}
	if (given_up) {
		rows.retire(row);
		return nullptr;
	}

	row->runs.resize(row->table->actions.size());
	row->serial = ++serial_counter;
	row->live = true;
	row->parent = parent;
	row->slot_in_parent = slot;
	if (parent != nullptr) {
		parent->children[slot] = row;
	} else {
		root = row;
	}
	chain_dirty = true;
	for (const KeyValue<StringName, LocalVector<int>> &watch : row->table->watches) {
		values.watching = true;
		values.watched.insert(watch.key);
	}
	row->entered_at = game_time_now();
	fresh.push_back(row);

	if (starts.get_type() == Variant::ARRAY) {
		enter_inner_rows(row, starts, targets, fresh);
	}
	return row;
}

void MachineRun::enter_inner_rows(RunRow *row, const Array &starts, const Targets &targets, LocalVector<RunRow *> &fresh) {
	Resource *state = row->state.ptr();
	row->children.resize(uint32_t(starts.size()));
	for (RunRow *&child : row->children) {
		child = nullptr;
	}
	for (int inner = 0; inner < int(starts.size()); inner++) {
		Ref<Resource> start = starts[inner];
		for (uint32_t i = 0; i < targets.count; i++) {
			Resource *target = targets.states[i];
			if (target != state && inner_slot_of(state, row->compiled, target) == inner) {
				Resource *toward = index.child_toward(state, target);
				start = toward != nullptr ? Ref<Resource>(toward) : start;
			}
		}
		// A state nested in itself would be entered for ever.
		if (start.is_valid() && !lies_above(row, start.ptr())) {
			enter_row(start.ptr(), row, inner, targets, fresh);
		}
		if (!row->live) {
			break;
		}
	}
}

void MachineRun::make_current(Resource *state) {
	// What was kept goes last, as its destructor can call user code.
	const Ref<Resource> former = std::move(kept_current);
	kept_current = state != nullptr && !index.has(state) ? Ref<Resource>(state) : Ref<Resource>();
	current = state;
}

void MachineRun::finish_entering(const LocalVector<RunRow *> &fresh, Resource *explicit_previous) {
	if (root == nullptr) {
		return;
	}
	// The deepest state of the first chain is the current one, unless a side branch has changed.
	const DesignIndex held = index;
	const Ref<Resource> kept_old = kept_current;
	Resource *previous = explicit_previous != nullptr ? explicit_previous : current;
	RunRow *deepest = fresh[0]->live && fresh[0]->in_a_branch() ? fresh[0]->deepest_first() : root->deepest_first();
	if (deepest->kept_by_index == 0 || deepest->kept_by_index != index.number()) {
		make_current(deepest->state.ptr());
		deepest->kept_by_index = kept_current.is_null() ? index.number() : 0;
	} else {
		kept_current.unref();
		current = deepest->state.ptr();
	}

	// Every new row remembers where it came from.
	for (RunRow *row : fresh) {
		if (row->previous_state.ptr() != previous) {
			row->previous_state = Ref<Resource>(previous);
		}
		if (row->entered_by != events.last_name) {
			row->entered_by = events.last_name;
		}
	}

	// Tell whoever listens.
	tell_of_change(current, previous, fresh);

	// Set the new rows to work. Each may be dead by now, or be killed by the one before it.
	for (RunRow *row : fresh) {
		if (row->live) {
			start_actions(row);
		}
	}
	for (uint32_t i = fresh.size(); i-- > 0;) {
		if (fresh[i]->live) {
			check_state_finished(fresh[i]);
		}
	}
	for (RunRow *row : fresh) {
		if (row->live) {
			refresh_lanes();
			return;
		}
	}
}

// Whoever calls this keeps both states until it has begun.
void MachineRun::tell_of_change(Resource *entered, Resource *left, const LocalVector<RunRow *> &fresh) {
	const bool heard = is_heard(MachineNames::shared().state_changed);
	if (!heard && !debugger_active && !debug_log) {
		return;
	}
	const Ref<Resource> now = entered;
	const Ref<Resource> previous = left;
	if (heard) {
		// The signal's parameters are declared the other way round, and yet the previous state goes first: listeners rely on it.
		emit_heard(MachineNames::shared().state_changed, previous, now);
	}
	if (debugger_active && node != nullptr) {
		DebuggerChannel::state(*this, now, previous);
		pause_where_told(fresh);
		call_node(MachineNames::shared().report_values);
	}
	if (debug_log && node != nullptr) {
		if (previous.is_valid()) {
			UtilityFunctions::print(vformat("[Machine] %s: %s -> %s", owner_name(), name_of(previous.ptr()), name_of(now.ptr())));
		} else {
			UtilityFunctions::print(vformat("[Machine] %s: starts in %s", owner_name(), name_of(now.ptr())));
		}
	}
}

// Any of the states just entered may say so, also one with others inside it.
void MachineRun::pause_where_told(const LocalVector<RunRow *> &fresh) {
	for (const RunRow *row : fresh) {
		const bool pauses = row->live && (row->compiled != nullptr ? row->compiled->pause_here : row->plan->pause_here);
		if (!pauses || paused || node == nullptr) {
			continue;
		}
		const Ref<Resource> state = row->state;
		UtilityFunctions::print(
				vformat("[Machine] %s: paused in %s, which has Pause Here on. Call set_paused(false) on the machine to go on, or switch Pause Here off.",
						owner_name(), name_of(state.ptr())));
		set_paused(true);
		DebuggerChannel::paused(*this, state);
		return;
	}
}

void MachineRun::leave_row(RunRow *row) {
	leaving++;
	for (uint32_t i = 0; i < row->children.size(); i++) {
		RunRow *child = row->children[i];
		if (child == nullptr) {
			continue;
		}
		if (child->live) {
			leave_row(child);
		}
		// The node may have been freed meanwhile, and its rows retired with it.
		if (row->children.is_empty()) {
			break;
		}
		row->children[i] = nullptr;
		rows.retire(child);
	}
	row->children.clear();
	if (row->live) {
		row->live = false;
		chain_dirty = true;
		// Before any exit, so that no timer can fire into an action that is being left.
		let_timers_go(row);
		RunningAs as(*this, row);
		for (const int action : row->table->exit_rows) {
			const ActionEntry &entry = row->table->actions[action];
			if (node != nullptr && row->runs[action].started && !is_disabled(entry)) {
				call_exit(row, action);
			}
		}
	}
	leaving--;
}

void MachineRun::detach_and_retire(RunRow *row) {
	if (row == root) {
		root = nullptr;
	} else if (row->parent != nullptr && row->slot_in_parent < int(row->parent->children.size()) && row->parent->children[row->slot_in_parent] == row) {
		row->parent->children[row->slot_in_parent] = nullptr;
	} else {
		// Already taken out, by the end of the node.
		return;
	}
	rows.retire(row);
}

// Carries out what was asked for while rows were being left. Answers true when the machine has been
// stopped: the change under way is over then.
bool MachineRun::act_on_pending() {
	if (leaving > 0 || (pending == PENDING_NONE && !resume_when_left)) {
		return false;
	}
	const Pending wanted = pending;
	const bool resume_wanted = resume_when_left;
	pending = PENDING_NONE;
	resume_when_left = false;
	const Variant kept = resume_list;
	stop_now();
	resume_list = kept;
	if (wanted == PENDING_START) {
		call_node(MachineNames::shared().start);
	} else if (resume_wanted && node != nullptr && node->is_inside_tree() && has_resume_states()) {
		resume_now();
	}
	return true;
}

void MachineRun::stop() {
	if (leaving > 0) {
		pending = PENDING_STOP;
		return;
	}
	stop_now();
}

void MachineRun::stop_now() {
	if (stopping) {
		return;
	}
	Busy keep(*this);
	stopping = true;
	call_node(MachineNames::shared().on_stopped);
	resume_list = Variant();
	events.held.clear();
	events.postponed.clear();
	values.pending_watchers.clear();
	if (root != nullptr) {
		RunRow *top = root;
		leave_row(top);
		detach_and_retire(top);
	}
	const bool start_wanted = pending == PENDING_START;
	resume_list = Variant();
	pending = PENDING_NONE;
	resume_when_left = false;
	chain.clear();
	chain_dirty = true;
	make_current(nullptr);
	running = false;
	stopping = false;
	refresh_lanes();
	if (start_wanted) {
		call_node(MachineNames::shared().start);
	}
}

Array MachineRun::let_go() {
	Busy keep(*this);
	Array leaves;
	if (running && root != nullptr) {
		for (RunRow *row : live_rows()) {
			if (!row->has_children()) {
				leaves.push_back(row->state);
			}
		}
		if (leaves.is_empty()) {
			leaves.push_back(root->state);
		}
	}
	stop();
	resume_list = leaves;
	return leaves;
}

void MachineRun::resume(const Array &leaves) {
	Busy keep(*this);
	resume_list = Variant();
	running = true;
	call_node(MachineNames::shared().connect_system_events);
	// What comes in as `leaves` may be let go of by the game while the states are entered.
	const Array kept = leaves.duplicate();
	LocalVector<Resource *> targets;
	for (int64_t i = 0; i < kept.size(); i++) {
		if (Resource *leaf = Object::cast_to<Resource>(kept[i].get_validated_object())) {
			targets.push_back(leaf);
		}
	}
	if (targets.is_empty() || leaving > 0 || !running || !may_enter(targets[0])) {
		return;
	}
	const DesignIndex held = index;
	LocalVector<Resource *> path;
	index.path_to(targets[0], path);
	ScratchLists<RunRow *>::Borrowed fresh(RunScratch::shared().rows);
	change_depth++;
	enter_as_root(path[0], { targets.ptr(), targets.size() }, fresh.list);
	if (!fresh.list.is_empty()) {
		finish_entering(fresh.list, nullptr);
	}
	changed_state();
}

void MachineRun::resume_now() {
	const Array leaves = resume_list;
	resume_list = Variant();
	resume(leaves);
}

// Handlers work as if called from outside: no action is being run while they are.
void MachineRun::emit(const StringName &signal, const Variant &first, const Variant &second) {
	if (is_heard(signal)) {
		emit_heard(signal, first, second);
	}
}

bool MachineRun::is_heard(const StringName &signal) const {
	return node != nullptr && node->offers(signal) && node->has_connections(signal);
}

void MachineRun::emit_heard(const StringName &signal, const Variant &first, const Variant &second) {
	RunningAs outside(*this, nullptr);
	if (signal == MachineNames::shared().state_finished) {
		node->emit_signal(signal, first);
	} else {
		node->emit_signal(signal, first, second);
	}
}

String MachineRun::owner_name() const {
	const Node *parent = node->get_parent();
	return parent != nullptr ? String(parent->get_name()) : String(node->get_name());
}
