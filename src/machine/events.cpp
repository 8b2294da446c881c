// Events: how they reach a machine, find a transition and take it.

#include "design/sc_machine_state.hpp"
#include "design/sc_machine_transition.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/debugger_channel.hpp"
#include "machine/engine_frame.hpp"
#include "machine/machine_run.hpp"
#include "machine/machine_snapshot.hpp"
#include "machine/names.hpp"
#include "machine/scoped_timer.hpp"
#include "machine/value_kinds.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace {

Array transitions_of(const Variant &state) {
	Object *object = state.get_validated_object();
	if (object == nullptr) {
		return Array();
	}
	if (const SCMachineState *compiled = Object::cast_to<SCMachineState>(object)) {
		return compiled->transitions;
	}
	const Variant transitions = object->get(MachineNames::shared().transitions);
	return transitions.get_type() == Variant::ARRAY ? Array(transitions) : Array();
}

StringName event_of(const Variant &transition) {
	Object *object = transition.get_validated_object();
	if (object == nullptr) {
		return StringName();
	}
	if (const SCMachineTransition *compiled = Object::cast_to<SCMachineTransition>(object)) {
		return compiled->event;
	}
	return object->get(MachineNames::shared().event);
}

bool has_live_child(const RunRow *row) {
	for (const RunRow *child : row->children) {
		if (child != nullptr && child->live) {
			return true;
		}
	}
	return false;
}

} // namespace

void MachineRun::send_event(const StringName &event, const Variant &data) {
	if (event.is_empty()) {
		return;
	}
	EventRegistry &registry = EventRegistry::shared();
	if (!registry.take_told_quests() && registry.is_quest_event(event)) {
		Busy keep(*this);
		call_node(MachineNames::shared().quest_heard, event);
		send_past_quests(event, data);
		return;
	}
	send_past_quests(event, data);
}

void MachineRun::send_past_quests(const StringName &event, const Variant &data) {
	if (EventRegistry::shared().is_global(event)) {
		EventRegistry::broadcast(event, data);
	} else {
		take_event(event, data, false);
	}
}

void EventRegistry::tell_quests(SCMachineBase *machine, const StringName &event) {
	if (machine != nullptr && shared().is_quest_event(event)) {
		MachineRun &run = machine->run();
		MachineRun::Busy keep(run);
		run.call_node(MachineNames::shared().quest_heard, event);
	}
}

void EventRegistry::send_past_quests(SCMachineBase *machine, const StringName &event, const Variant &data) {
	shared().told_quests = true;
	machine->send_event(event, data);
	shared().told_quests = false;
}

bool EventRegistry::take_told_quests() {
	const bool told = told_quests;
	told_quests = false;
	return told;
}

void EventRegistry::broadcast(const StringName &event, const Variant &data) {
	if (event.is_empty()) {
		return;
	}
	const StringName kept_event = event;
	const Variant kept_data = data;
	MachineSnapshot(kept_event).each([&](SCMachineBase *machine) { machine->run().take_event(kept_event, kept_data, true); });
}

// A signal handler never works inside a physics step, and what it sends is not taken as sent by the
// action that happens to be running.
void MachineRun::send_event_from_signal(const StringName &event, const Variant &data) {
	if (node == nullptr) {
		return;
	}
	if (EngineFrame::now().in_physics) {
		node->call_deferred(MachineNames::shared().send_event, event, data);
		return;
	}
	Busy keep(*this);
	RunningAs outside(*this, nullptr);
	send_event(event, data);
}

void MachineRun::system_event(const StringName &event, const Variant &data) {
	if (node == nullptr) {
		return;
	}
	if (EngineFrame::now().in_physics) {
		node->call_deferred(MachineNames::shared().take_event_deferred, event, data);
		return;
	}
	Busy keep(*this);
	RunningAs outside(*this, nullptr);
	take_event(event, data, false);
}

void MachineRun::take_event(const StringName &name, const Variant &carried, bool global) {
	if (node == nullptr || name.is_empty()) {
		return;
	}
	Busy keep(*this);
	ScopedTimer timer(false);

	// Every event is heard and reported, also by a machine that will not take it.
	if (!tell_of_event(name, carried)) {
		return;
	}
	if (debugger_active && node != nullptr) {
		DebuggerChannel::events(*this, name, carried, global);
	}
	if (debug_log && node != nullptr) {
		UtilityFunctions::print(vformat("[Machine] %s: event %s%s", owner_name(), name, global ? " (global)" : ""));
	}
	if (!running || leaving > 0) {
		return;
	}
	if (holds_writes()) {
		HeldEvent held;
		held.name = name;
		held.data = carried;
		held.serial = running_row != nullptr ? running_row->serial : 0;
		events.held.push_back(held);
		return;
	}
	dispatch_counted(name, carried);
}

// Whoever hears of an event may send another, which is told in turn. A listener that answers every event with one would go on
// until the stack is full, so from some depth on an event is dropped, and so is what else comes on the way back: two such
// listeners would be told twice as often at each depth. Answers whether the event is to be taken.
bool MachineRun::tell_of_event(const StringName &name, const Variant &carried) {
	static int telling_anywhere = 0;
	static bool too_deep = false;
	if (!is_heard(MachineNames::shared().event_sent)) {
		return true;
	}
	if (telling_anywhere >= MOST_NESTED_CHANGES || (too_deep && events.telling > 0)) {
		too_deep = true;
		MakerWarnings::once_for(node, "event_sent without end",
				vformat("Machine on %s: the event %s was dropped. It was sent because the event_sent signal told of an event, which was sent for the same "
						"reason, and so on %d times. Look for an Event On Signal, or a script, that listens to event_sent and sends an event each time. Let it "
						"send only after the events that it is meant for.",
						node->name_in_messages(), name, MOST_NESTED_CHANGES));
		return false;
	}
	telling_anywhere++;
	events.telling++;
	emit_heard(MachineNames::shared().event_sent, name, carried);
	events.telling--;
	telling_anywhere--;
	too_deep = too_deep && telling_anywhere > 0;
	return true;
}

// An event from outside starts a fresh count of the states entered, and leaves one behind.
void MachineRun::dispatch_counted(const StringName &event, const Variant &data) {
	if (change_depth == 0) {
		loop_limiter.begin_chain();
	} else if (change_depth >= MOST_NESTED_CHANGES) {
		postpone(event, data, false, running_row);
		return;
	}
	if (root != nullptr && root->live) {
		change_depth++;
		dispatch(event, data);
		change_depth--;
	}
	if (change_depth == 0) {
		dispatch_postponed();
		loop_limiter.begin_chain();
	}
}

void MachineRun::postpone(const StringName &event, const Variant &data, bool of_finished_state, const RunRow *row) {
	PostponedEvent postponed;
	postponed.name = event;
	postponed.data = data;
	postponed.serial = row != nullptr ? row->serial : 0;
	postponed.of_finished_state = of_finished_state;
	events.postponed.push_back(postponed);
}

// States that lead on at once are entered one within the other. Where that is meant, as in a loop of a thousand rounds, it
// would use up the stack: so from some depth on what happens is noted, and taken up here when the outermost change has ended.
void MachineRun::dispatch_postponed() {
	while (!events.postponed.is_empty() && running && leaving == 0) {
		const PostponedEvent next = events.postponed[0];
		events.postponed.remove_at(0);
		RunRow *row = row_of_serial(next.serial);
		// Of a state that has been left since.
		if (next.serial != 0 && row == nullptr) {
			continue;
		}
		change_depth++;
		if (!next.of_finished_state) {
			RunningAs as(*this, row);
			dispatch(next.name, next.data);
		} else if (!leave_finished(row)) {
			check_state_finished(row->parent);
		}
		change_depth--;
	}
}

bool MachineRun::dispatch(const StringName &event, const Variant &data) {
	RunningAs same(*this, running_row);
	if (event == MachineNames::shared().finished_event) {
		return dispatch_finished(data);
	}
	if (events.has_forwarders() && offer_to_forwarders(event, data)) {
		return true;
	}
	return root != nullptr && root->live && offer(root, event, data);
}

bool MachineRun::offer_to_forwarders(const StringName &event, const Variant &data) {
	const Array forwarders = events.forwarders();
	bool consumed = false;
	for (int64_t i = 0; i < forwarders.size(); i++) {
		const Callable forwarder = forwarders[i];
		if (forwarder.is_valid()) {
			consumed = forwarder.call(event, data).booleanize() || consumed;
		}
	}
	return consumed;
}

// FINISHED is about one state, the one whose action sent it; from outside it is about the innermost.
bool MachineRun::dispatch_finished(const Variant &data) {
	const StringName &finished = MachineNames::shared().finished_event;
	if (running_row != nullptr) {
		return running_row->live && try_transitions(running_row, finished, data);
	}
	ScratchLists<RunRow *>::Borrowed pass(RunScratch::shared().rows);
	for (RunRow *row : live_rows()) {
		pass.list.push_back(row);
	}
	bool taken = false;
	for (RunRow *row : pass.list) {
		if (row->live && !has_live_child(row)) {
			taken = try_transitions(row, finished, data) || taken;
		}
	}
	return taken;
}

// Deepest first: a state inside hears the event before the one around it, and hides it by taking it.
bool MachineRun::offer(RunRow *row, const StringName &event, const Variant &data) {
	bool taken = false;
	if (row->children.size() == 1) {
		RunRow *child = row->children[0];
		taken = child != nullptr && child->live && offer(child, event, data);
	} else if (row->children.size() > 1) {
		ScratchLists<RunRow *>::Borrowed branches(RunScratch::shared().rows);
		for (RunRow *child : row->children) {
			branches.list.push_back(child);
		}
		for (RunRow *child : branches.list) {
			if (!row->live) {
				break;
			}
			if (child != nullptr && child->live) {
				taken = offer(child, event, data) || taken;
			}
		}
	}
	return taken || !row->live || try_transitions(row, event, data);
}

bool MachineRun::try_transitions(RunRow *row, const StringName &event, const Variant &data) {
	const StatePlan *plan = CompiledDesign::plan_of(row->state.ptr(), row->compiled, row->plan);
	if (event == MachineNames::shared().finished_event && !plan->has_finished) {
		return false;
	}
	for (const TransitionRow &transition : plan->rows) {
		if (transition.event != event) {
			continue;
		}
		// A machine without an index asks its node, which may make the answer up.
		const Ref<Resource> answered = index.has_names() ? Ref<Resource>() : find_state(transition.to_state);
		Resource *target = answered.is_valid() ? answered.ptr() : index.find(transition.to_state);
		const bool again = target == row->state.ptr();
		// A state that runs in another branch already is passed over.
		if (target == nullptr || (!again && row_in(target) != nullptr)) {
			continue;
		}
		take_transition(target, again, transition.store_data_in, data, event);
		return true;
	}
	return false;
}

void MachineRun::take_transition(Resource *target, bool again, const StringName &store_data_in, const Variant &data, const StringName &event) {
	Busy keep(*this);
	// Keeps the target, whatever is begun meanwhile.
	const DesignIndex held = index;
	const StringName stored = store_data_in;
	events.remember(event, data, EventRegistry::shared().sender_of(event));
	bool stored_change = false;
	if (!stored.is_empty() && data.get_type() != Variant::NIL) {
		stored_change = call_node(MachineNames::shared().store_event_data, stored, data).booleanize();
	}
	const int64_t serial_before = serial_counter;
	keep_event = true;
	if (again) {
		begin_again(target);
	} else {
		go_from_here(target);
	}
	keep_event = false;
	// Only states older than the change hear of the value: a new one has just read it.
	if (stored_change && values.watching) {
		tell_watchers(stored, serial_before);
	}
}

bool MachineRun::store_event_data(const StringName &stored, const Variant &data) {
	const bool existed = has_value(stored);
	const Variant now = get_value(stored, Variant());
	const Variant fitted = SCMachineBase::fit_to(now, data);
	if (ValueKinds::is_nothing(fitted)) {
		return false;
	}
	const Variant limited = within_limits(stored, fitted);
	Busy keep(*this);
	const StringName kept_name = stored;
	Variant former;
	values.put(kept_name, limited, former);
	mark_values_changed();
	if (values.shares.has(kept_name)) {
		share_value(kept_name, limited);
	}
	return !existed || !ValueKinds::is_same(now, limited);
}

void MachineRun::run_queued_events() {
	Busy keep(*this);
	while (!events.held.is_empty() && running && !holds_writes()) {
		const HeldEvent held = events.held[0];
		events.held.remove_at(0);
		RunningAs as(*this, row_of_serial(held.serial));
		dispatch_counted(held.name, held.data);
	}
}

void MachineRun::register_globals(const Array &design, const Array &global_names) {
	forget_globals();
	if (node == nullptr) {
		return;
	}
	EventRegistry &registry = EventRegistry::shared();
	events.registered_as = node->get_instance_id();
	HashSet<StringName> known;
	for (int64_t i = 0; i < design.size(); i++) {
		const Array transitions = transitions_of(design[i]);
		for (int64_t t = 0; t < transitions.size(); t++) {
			const StringName event = event_of(transitions[t]);
			if (!event.is_empty() && !known.has(event)) {
				known.insert(event);
				events.listening.push_back(event);
				registry.listen(event, events.registered_as);
			}
		}
	}
	for (int64_t i = 0; i < global_names.size(); i++) {
		const StringName event = global_names[i];
		events.own_globals.push_back(event);
		registry.use_global(event);
	}
}

void MachineRun::forget_globals() {
	if (events.registered_as == 0) {
		return;
	}
	EventRegistry &registry = EventRegistry::shared();
	for (const StringName &event : events.listening) {
		registry.stop_listening(event, events.registered_as);
	}
	for (const StringName &event : events.own_globals) {
		registry.drop_global(event);
	}
	events.listening.clear();
	events.own_globals.clear();
	events.registered_as = 0;
}

// A state entered by a press does not take that same press again.
bool MachineRun::press_already_used(const StringName &named) {
	const UsedPress *press = events.used_presses.getptr(named);
	const RunRow *row = running_or_last();
	return press != nullptr && row != nullptr && press->frame_stamp == EngineFrame::now().stamp() && row->serial > press->serial;
}

void MachineRun::use_press(const StringName &named) {
	UsedPress press;
	press.frame_stamp = EngineFrame::now().stamp();
	press.serial = serial_counter;
	events.used_presses[named] = press;
}
