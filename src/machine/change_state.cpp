// Entering and leaving: how a machine gets from state to state, stops and is carried over.

#include "design/sc_machine_state.hpp"
#include "machine/debugger_channel.hpp"
#include "machine/engine_frame.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "sc_machine_base.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace {

Array inner_starts_of(const Ref<Resource> &state) {
	if (SCMachineState *compiled = Object::cast_to<SCMachineState>(state.ptr())) {
		return compiled->inner_starts();
	}
	const StringName &method = MachineNames::shared().inner_starts;
	return state->has_method(method) ? Array(state->call(method)) : Array();
}

int inner_slot_of(const Ref<Resource> &state, const Ref<Resource> &inner) {
	if (SCMachineState *compiled = Object::cast_to<SCMachineState>(state.ptr())) {
		return int(compiled->inner_slot_of(inner));
	}
	const StringName &method = MachineNames::shared().inner_slot_of;
	return state->has_method(method) ? int(state->call(method, inner)) : -1;
}

String name_of(const Ref<Resource> &state) {
	return state.is_valid() ? String(StringName(state->get(MachineNames::shared().state_name))) : String();
}

bool lies_above(const RunRow *row, const Ref<Resource> &state) {
	for (; row != nullptr; row = row->parent) {
		if (row->state == state) {
			return true;
		}
	}
	return false;
}

} // namespace

void MachineRun::go_to_state(const Ref<Resource> &state) {
	if (state.is_null() || state == current || !running || leaving > 0) {
		return;
	}
	Busy keep(*this);
	if (!may_enter(state)) {
		return;
	}
	change_depth++;
	change_state(state, false);
	change_depth--;
}

void MachineRun::restart_state(const Ref<Resource> &state) {
	if (state.is_null() || row_in(state) == nullptr) {
		go_to_state(state);
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
	change_state(state, true);
	change_depth--;
}

bool MachineRun::go_to(const StringName &state_name) {
	const Ref<Resource> state = find_state(state_name);
	if (state.is_null()) {
		return false;
	}
	go_to_state(state);
	return true;
}

// Counts this entry, and stops a machine whose states lead round in a circle.
bool MachineRun::may_enter(const Ref<Resource> &target) {
	const EngineFrame now = EngineFrame::now();
	const int64_t entered = guard.count_entry(now.number, now.in_physics);
	if (entered == 0) {
		return true;
	}
	if (node != nullptr) {
		UtilityFunctions::push_error(vformat("Machine on %s entered %d states in one frame, which means its states lead straight back to one another, so it has stopped. The last was %s. Look for states whose FINISHED or events lead back round with nothing to wait for. A Wait or a Next Frame Event in one of them breaks the circle. A template that really does pass through that many states in one frame can raise Loop Increment Limit on its template.", node->name_in_messages(), entered, name_of(target)));
	}
	stop();
	return false;
}

void MachineRun::progress_made(uint64_t walker, int64_t most) {
	const EngineFrame now = EngineFrame::now();
	guard.progress_made(walker, most, now.number, now.in_physics);
}

void MachineRun::change_state(const Ref<Resource> &target, bool restart) {
	if (!keep_event) {
		events.forget_last();
	}
	keep_event = false;
	ScratchLists<RunRow *>::Borrowed fresh(row_lists);

	if (restart) {
		if (RunRow *row = row_in(target)) {
			restart_row(row, fresh.list);
		}
		return;
	}

	LocalVector<Ref<Resource>> path;
	if (index.has_parents()) {
		index.path_to(target, path);
	} else {
		path.push_back(target);
	}
	LocalVector<Ref<Resource>> targets;
	targets.push_back(target);

	if (root == nullptr || !root->live || root->state != path[0]) {
		enter_as_root(path[0], targets, fresh.list);
		if (!fresh.list.is_empty()) {
			finish_entering(fresh.list, Ref<Resource>());
		}
		return;
	}

	Ref<Resource> previous;
	RunRow *at = root;
	for (uint32_t i = 1; i < path.size(); i++) {
		const int slot = inner_slot_of(at->state, path[i]);
		if (slot < 0 || slot >= int(at->children.size())) {
			return;
		}
		RunRow *child = at->children[slot];
		if (child != nullptr && child->live && child->state == path[i]) {
			at = child;
			continue;
		}
		if (child != nullptr && child->live) {
			if (child->beside_others()) {
				previous = child->deepest_first()->state;
			}
			leave_row(child);
			detach_and_bury(child);
			if (act_on_pending() || !running || !at->live) {
				return;
			}
		}
		enter_row(path[i], at, slot, targets, fresh.list);
		break;
	}
	if (!fresh.list.is_empty()) {
		finish_entering(fresh.list, previous);
	}
}

void MachineRun::enter_as_root(const Ref<Resource> &top, const LocalVector<Ref<Resource>> &targets, LocalVector<RunRow *> &fresh) {
	if (root != nullptr) {
		RunRow *former = root;
		leave_row(former);
		detach_and_bury(former);
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
	leave_row(row);
	LocalVector<Variant> answers;
	for (const ActionRun &action : row->runs) {
		const Dictionary memory = action.slot.get_type() == Variant::DICTIONARY ? Dictionary(action.slot) : Dictionary();
		answers.push_back(memory.get(check_last, Variant()));
	}
	detach_and_bury(row);
	if (act_on_pending() || !running || (parent != nullptr && !parent->live)) {
		return;
	}
	RunRow *again = enter_row(state, parent, slot, LocalVector<Ref<Resource>>(), fresh);
	if (again == nullptr) {
		return;
	}
	for (uint32_t i = 0; i < answers.size() && i < again->runs.size(); i++) {
		if (answers[i].get_type() != Variant::NIL) {
			Dictionary memory;
			memory[check_last] = answers[i];
			again->runs[i].slot = memory;
		}
	}
	finish_entering(fresh, previous);
}

RunRow *MachineRun::enter_row(const Ref<Resource> &state, RunRow *parent, int slot, const LocalVector<Ref<Resource>> &targets, LocalVector<RunRow *> &fresh) {
	// Reading a state asks its actions about themselves, which may be a game's script: if that, or the
	// reading of a state beside this one, has stopped the machine or entered something else, its word
	// stands and this entry is given up.
	const int64_t serial_before = serial_counter;
	const ActionTable *table = CompiledDesign::actions_of(state);
	const StatePlan *plan = CompiledDesign::plan_of(state);
	Array starts;
	if (plan->composite) {
		starts = inner_starts_of(state);
	}
	if (serial_counter != serial_before || !running || (parent != nullptr && !parent->live)) {
		return nullptr;
	}
	const RunRow *there = parent != nullptr ? parent->children[slot] : root;
	if (there != nullptr && there->live) {
		return nullptr;
	}

	RunRow *row = rows.take();
	row->state = state;
	row->table = table;
	row->plan = plan;
	row->runs.resize(table->actions.size());
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
	for (const KeyValue<StringName, LocalVector<int>> &watch : table->watches) {
		values.watching = true;
		values.watched.insert(watch.key);
	}
	row->entered_at = game_time_now();
	fresh.push_back(row);

	row->children.resize(uint32_t(starts.size()));
	for (RunRow *&child : row->children) {
		child = nullptr;
	}
	for (int inner = 0; inner < int(starts.size()); inner++) {
		Ref<Resource> start = starts[inner];
		for (const Ref<Resource> &target : targets) {
			if (target != state && inner_slot_of(state, target) == inner) {
				const Ref<Resource> toward = index.child_toward(state, target);
				start = toward.is_valid() ? toward : start;
			}
		}
		// A state nested in itself would be entered for ever.
		if (start.is_valid() && !lies_above(row, start)) {
			enter_row(start, row, inner, targets, fresh);
		}
		if (!row->live) {
			break;
		}
	}
	return row;
}

void MachineRun::finish_entering(const LocalVector<RunRow *> &fresh, const Ref<Resource> &explicit_previous) {
	// 1. The deepest state of the first chain is the current one, unless a side branch has changed.
	const Ref<Resource> old = current;
	if (root == nullptr) {
		return;
	}
	RunRow *deepest = fresh[0]->live && fresh[0]->in_a_branch() ? fresh[0]->deepest_first() : root->deepest_first();
	current = deepest->state;
	const Ref<Resource> now = current;

	// 2. Every new row remembers where it came from.
	const Ref<Resource> previous = explicit_previous.is_valid() ? explicit_previous : old;
	for (RunRow *row : fresh) {
		row->previous_state = previous;
		row->entered_by = events.last_name;
	}

	// 3. to 5. Tell whoever listens. The signal's parameters are declared the other way round, and yet
	// the previous state goes first: listeners rely on it.
	emit(MachineNames::shared().state_changed, previous, now);
	if (debugger_active && node != nullptr) {
		DebuggerChannel::state(*this, now, previous);
		if (CompiledDesign::plan_of(now)->pause_here && !paused) {
			set_paused(true);
			DebuggerChannel::paused(*this, now);
		}
		call_node(MachineNames::shared().report_values);
	}
	if (debug_log && node != nullptr) {
		if (previous.is_valid()) {
			UtilityFunctions::print(vformat("[Machine] %s: %s -> %s", owner_name(), name_of(previous), name_of(now)));
		} else {
			UtilityFunctions::print(vformat("[Machine] %s: starts in %s", owner_name(), name_of(now)));
		}
	}

	// 6. to 8. Set the new rows to work. Each may be dead by now, or be killed by the one before it.
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
		// The node may have been freed meanwhile, and its rows buried with it.
		if (row->children.is_empty()) {
			break;
		}
		row->children[i] = nullptr;
		rows.bury(child);
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

void MachineRun::detach_and_bury(RunRow *row) {
	if (row == root) {
		root = nullptr;
	} else if (row->parent != nullptr && row->slot_in_parent < int(row->parent->children.size()) && row->parent->children[row->slot_in_parent] == row) {
		row->parent->children[row->slot_in_parent] = nullptr;
	} else {
		// Already taken out, by the end of the node.
		return;
	}
	rows.bury(row);
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
	const Array kept = resume_list;
	stop_now();
	resume_list = kept;
	if (wanted == PENDING_START) {
		call_node(MachineNames::shared().start);
	} else if (resume_wanted && node != nullptr && node->is_inside_tree() && !resume_list.is_empty()) {
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
	resume_list = Array();
	events.held.clear();
	values.pending_watchers.clear();
	if (root != nullptr) {
		RunRow *top = root;
		leave_row(top);
		detach_and_bury(top);
	}
	const bool start_wanted = pending == PENDING_START;
	resume_list = Array();
	pending = PENDING_NONE;
	resume_when_left = false;
	chain.clear();
	chain_dirty = true;
	current.unref();
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
	resume_list = Array();
	running = true;
	call_node(MachineNames::shared().connect_system_events);
	LocalVector<Ref<Resource>> targets;
	for (int64_t i = 0; i < leaves.size(); i++) {
		const Ref<Resource> leaf = leaves[i];
		if (leaf.is_valid()) {
			targets.push_back(leaf);
		}
	}
	if (targets.is_empty() || leaving > 0 || !running || !may_enter(targets[0])) {
		return;
	}
	LocalVector<Ref<Resource>> path;
	index.path_to(targets[0], path);
	ScratchLists<RunRow *>::Borrowed fresh(row_lists);
	change_depth++;
	enter_as_root(path[0], targets, fresh.list);
	if (!fresh.list.is_empty()) {
		finish_entering(fresh.list, Ref<Resource>());
	}
	change_depth--;
}

void MachineRun::resume_now() {
	const Array leaves = resume_list;
	resume_list = Array();
	resume(leaves);
}

// Handlers work as if called from outside: no action is being run while they are.
void MachineRun::emit(const StringName &signal, const Variant &first, const Variant &second) {
	if (node == nullptr || !node->offers(signal) || !node->has_connections(signal)) {
		return;
	}
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
