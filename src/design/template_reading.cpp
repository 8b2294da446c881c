#include "design/template_reading.hpp"

#include "design/sc_machine_event.hpp"
#include "design/sc_machine_template.hpp"
#include "design/sc_machine_transition.hpp"
#include "design/state_walk.hpp"

#include <godot_cpp/templates/hash_set.hpp>

void TemplateReading::ReadState::read(const SCMachineState *from) {
	state = from;
	name = from->state_name;
	transitions.take(from->transitions);
	sub_states.take(from->sub_states);
	regions.take(from->parallel_states);
	for (int64_t i = 0; i < from->transitions.size(); i++) {
		const Ref<SCMachineTransition> transition = from->transitions[i];
		if (transition.is_valid()) {
			each_transition.push_back({ transition.ptr(), transition->event });
		}
	}
	for (int64_t i = 0; i < from->parallel_states.size(); i++) {
		const Ref<SCMachineParallelState> region = from->parallel_states[i];
		if (region.is_valid()) {
			ReadRegion read;
			read.region = region.ptr();
			read.states.take(region->states);
			each_region.push_back(read);
		}
	}
}

bool TemplateReading::ReadState::is_as_read() const {
	if (state->state_name != name || !transitions.holds(state->transitions) || !sub_states.holds(state->sub_states) || !regions.holds(state->parallel_states)) {
		return false;
	}
	for (const ReadTransition &read : each_transition) {
		if (read.transition->event != read.event) {
			return false;
		}
	}
	for (const ReadRegion &read : each_region) {
		if (!read.states.holds(read.region->states)) {
			return false;
		}
	}
	return true;
}

TemplateReading::TemplateReading(const SCMachineTemplate &from) {
	initial_state = from.initial_state;
	top_states.take(from.states);
	variable_stamp.take(from.variables);
	events.take(from.events);
	state_list = from.states.duplicate();
	variable_list = from.variables.duplicate();

	StateWalk walk;
	walk.visit_all(from.states);
	walk.visit(from.initial_state);
	index.build(walk.found);

	HashSet<StringName> known;
	each_state.resize(uint32_t(walk.found.size()));
	for (uint32_t i = 0; i < each_state.size(); i++) {
		const Ref<SCMachineState> state = walk.found[i];
		each_state[i].read(state.ptr());
		for (const ReadTransition &read : each_state[i].each_transition) {
			if (!read.event.is_empty() && !known.has(read.event)) {
				known.insert(read.event);
				listening.push_back(read.event);
			}
		}
	}
	for (int64_t i = 0; i < from.events.size(); i++) {
		const Ref<SCMachineEvent> event = from.events[i];
		if (event.is_valid()) {
			each_event.push_back({ event.ptr(), event->event_name, event->is_global });
		}
	}
	const TypedArray<StringName> names = from.global_event_names();
	for (int64_t i = 0; i < names.size(); i++) {
		global_events.push_back(names[i]);
	}
	for (int64_t i = 0; i < from.variables.size(); i++) {
		const Ref<SCMachineVariable> variable = from.variables[i];
		if (variable.is_valid()) {
			variables.push_back(variable);
		}
	}
}

bool TemplateReading::is_of(const SCMachineTemplate &now) const {
	if (now.initial_state != initial_state || !top_states.holds(now.states) || !variable_stamp.holds(now.variables) || !events.holds(now.events)) {
		return false;
	}
	for (const ReadState &read : each_state) {
		if (!read.is_as_read()) {
			return false;
		}
	}
	for (const ReadEvent &read : each_event) {
		if (read.event->event_name != read.name || read.event->is_global != read.is_global) {
			return false;
		}
	}
	return true;
}
