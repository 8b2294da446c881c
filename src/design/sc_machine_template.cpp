#include "design/sc_machine_template.hpp"

#include "design/sc_machine_transition.hpp"
#include "design/state_walk.hpp"

TypedArray<StringName> SCMachineTemplate::global_event_names() const {
	TypedArray<StringName> names;
	for (int64_t i = 0; i < events.size(); i++) {
		const Ref<SCMachineEvent> event = events[i];
		if (event.is_valid() && event->is_global && !event->event_name.is_empty() && !names.has(event->event_name)) {
			names.push_back(event->event_name);
		}
	}
	return names;
}

Ref<SCMachineEvent> SCMachineTemplate::event_named(const StringName &wanted) const {
	for (int64_t i = 0; i < events.size(); i++) {
		const Ref<SCMachineEvent> event = events[i];
		if (event.is_valid() && event->event_name == wanted) {
			return event;
		}
	}
	return Ref<SCMachineEvent>();
}

TypedArray<SCMachineState> SCMachineTemplate::all_states() const {
	StateWalk walk;
	walk.visit_all(states);
	return walk.found;
}

void SCMachineTemplate::collect_once(const Ref<SCMachineState> &state, const Array &into, const Dictionary &seen) const {
	Array found = into;
	Dictionary visited = seen;
	if (state.is_null() || visited.has(state)) {
		return;
	}
	StateWalk walk;
	for (int64_t i = 0; i < visited.size(); i++) {
		walk.skip(visited.keys()[i]);
	}
	walk.visit(state);
	for (int64_t i = 0; i < walk.found.size(); i++) {
		found.push_back(walk.found[i]);
		visited[walk.found[i]] = true;
	}
}

void SCMachineTemplate::collect(const Ref<SCMachineState> &state, const Array &into) const {
	Array found = into;
	StateWalk walk;
	for (int64_t i = 0; i < found.size(); i++) {
		walk.skip(found[i]);
	}
	walk.visit(state);
	found.append_array(walk.found);
}

Ref<SCMachineState> SCMachineTemplate::parent_of(const Ref<SCMachineState> &state) const {
	const TypedArray<SCMachineState> all = all_states();
	for (int64_t i = 0; i < all.size(); i++) {
		const Ref<SCMachineState> holder = all[i];
		if (holder->sub_states.has(state)) {
			return holder;
		}
		for (int64_t r = 0; r < holder->parallel_states.size(); r++) {
			const Ref<SCMachineParallelState> region = holder->parallel_states[r];
			if (region.is_valid() && region->states.has(state)) {
				return holder;
			}
		}
	}
	return Ref<SCMachineState>();
}

Ref<SCMachineParallelState> SCMachineTemplate::parallel_state_of(const Ref<SCMachineState> &state) const {
	const TypedArray<SCMachineState> all = all_states();
	for (int64_t i = 0; i < all.size(); i++) {
		const Ref<SCMachineState> holder = all[i];
		for (int64_t r = 0; r < holder->parallel_states.size(); r++) {
			const Ref<SCMachineParallelState> region = holder->parallel_states[r];
			if (region.is_valid() && region->states.has(state)) {
				return region;
			}
		}
	}
	return Ref<SCMachineParallelState>();
}

PackedStringArray SCMachineTemplate::missing_state_names() const {
	const TypedArray<SCMachineState> all = all_states();
	HashSet<StringName> known;
	for (int64_t i = 0; i < all.size(); i++) {
		known.insert(Ref<SCMachineState>(all[i])->state_name);
	}
	PackedStringArray missing;
	for (int64_t i = 0; i < all.size(); i++) {
		const Ref<SCMachineState> state = all[i];
		for (int64_t t = 0; t < state->transitions.size(); t++) {
			const Ref<SCMachineTransition> transition = state->transitions[t];
			if (transition.is_valid() && !transition->to_state.is_empty() && !known.has(transition->to_state)) {
				known.insert(transition->to_state);
				missing.push_back(transition->to_state);
			}
		}
	}
	return missing;
}

Held<TemplateReading> SCMachineTemplate::reading() const {
	if (!latest_reading.is_valid() || !latest_reading->is_of(*this)) {
		latest_reading = Held<TemplateReading>(memnew(TemplateReading(*this)));
	}
	return latest_reading;
}

String SCMachineTemplate::_to_string() const {
	return display_name.is_empty() ? String("MachineTemplate") : display_name;
}

void SCMachineTemplate::_bind_methods() {
	ClassTable<SCMachineTemplate> table("A whole machine saved as a file, with its states, the one it starts in and its variables. Put one on any number of "
										"Machine nodes, and editing the file changes all of them.");
	table.setting<&SCMachineTemplate::display_name>("display_name", "Name shown in the graph's picker.");
	table.setting<&SCMachineTemplate::description>("description", hint::MULTILINE, "What this machine does.");
	table.setting<&SCMachineTemplate::initial_state>("initial_state", "The state the machine starts in.");
	table.setting<&SCMachineTemplate::states>("states", "Every top-level state. Nested states belong to their parent.");
	table.setting<&SCMachineTemplate::variables>("variables", "Variables every machine using this template starts with.");
	table.setting<&SCMachineTemplate::events>(
			"events", "Events this machine declares: what each means, what it carries, and whether every machine in the game hears it.");
	table.setting<&SCMachineTemplate::loop_increment_limit>("loop_increment_limit", { PROPERTY_HINT_RANGE, "1,1000,1,or_greater" },
			"How many states a machine may enter in one run of moves before it decides that its states lead round in a circle with nothing to wait for and "
			"stops with a message naming the state. Each event arriving from outside starts a fresh count.");
	table.setting<&SCMachineTemplate::notes>("notes", "Boxes drawn behind the states. They have no effect on running.");
	table.setting<&SCMachineTemplate::carries_over>("carries_over",
			"Carry this machine on into the next scene, with its variables, stats and inventories, to the machine running the same template there.");
	ClassDB::bind_method(D_METHOD("global_event_names"), &SCMachineTemplate::global_event_names);
	ClassDB::bind_method(D_METHOD("event_named", "wanted"), &SCMachineTemplate::event_named);
	ClassDB::bind_method(D_METHOD("all_states"), &SCMachineTemplate::all_states);
	ClassDB::bind_method(D_METHOD("_collect_once", "state", "into", "seen"), &SCMachineTemplate::collect_once);
	ClassDB::bind_method(D_METHOD("_collect", "state", "into"), &SCMachineTemplate::collect);
	ClassDB::bind_method(D_METHOD("parent_of", "state"), &SCMachineTemplate::parent_of);
	ClassDB::bind_method(D_METHOD("parallel_state_of", "state"), &SCMachineTemplate::parallel_state_of);
	ClassDB::bind_method(D_METHOD("missing_state_names"), &SCMachineTemplate::missing_state_names);
}
