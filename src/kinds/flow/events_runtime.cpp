// Compiled runtimes of the kinds that move a machine on, and of the one that reads what an event brought.

#include "action/add_kind.hpp"
#include "action/own_value.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/flow/events.hpp"
#include "machine/native_names.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

#include <cmath>

namespace {

struct FlowNames {
	StringName frame = "frame";
	StringName physics_frame = "physics_frame";
	StringName left = "left";
	StringName shown = "shown";
	StringName counts_in = "counts_in";
};

class GetEventData : public OnceOrRepeating<GetEventData> {
	// The machine that sent it works on that node.
	static Node *sender_of(SCMachineBase *machine, const StringName &event) {
		Node *from = event.is_empty() ? machine->last_event_sender() : static_cast<Node *>(SCMachineBase::sender_of(event));
		const SCMachineBase *sent_by = Object::cast_to<SCMachineBase>(from);
		return sent_by != nullptr ? sent_by->target_node() : from;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		StillHere here(machine);
		const StringName event = setting_of<&SCGetEventDataAction::event>(action);
		const StringName store_in = setting_of<&SCGetEventDataAction::store_in>(action);
		const StringName store_sender_in = setting_of<&SCGetEventDataAction::store_sender_in>(action);
		if (store_in.is_empty() && store_sender_in.is_empty()) {
			verbs::warn(machine, action, "no variable is picked, so what the event carried goes nowhere. Pick one beside Store In.");
			return;
		}
		Variant data = event.is_empty() ? machine->last_event_data() : machine->event_data(event);
		if (ValueKinds::is_nothing(data)) {
			data = contents::own_value<&SCGetEventDataAction::if_it_carried_nothing>(action);
		}
		if (!ValueKinds::is_nothing(data)) {
			verbs::keep_if_named<&SCGetEventDataAction::store_in>(machine, action, data);
		}
		if (here) {
			verbs::keep_if_named<&SCGetEventDataAction::store_sender_in>(machine, action, sender_of(machine, event));
		}
	}
};

class GoToState : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->finish(index);
		StillHere here(machine);
		const StringName state = words::text_of(
				values::value_of(machine, setting_of<&SCGoToStateAction::state_name>(action), setting_of<&SCGoToStateAction::state_name_variable>(action)));
		if (!here) {
			return;
		}
		if (state.is_empty()) {
			verbs::warn(machine, action, "no state is picked, so the machine stays where it is. Pick one beside State Name.");
		} else if (!machine->go_to(state) && here) {
			verbs::warn(machine, action, vformat("this machine has no state called %s, so it stays where it is. Pick one it has beside State Name.", state));
		}
	}
};

class NextFrameEvent : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *, int index) override {
		const FlowNames &names = NativeNames::of<FlowNames>();
		Dictionary memory = machine->slot(index);
		memory[names.frame] = Engine::get_singleton()->get_process_frames();
		memory[names.physics_frame] = Engine::get_singleton()->get_physics_frames();
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		const FlowNames &names = NativeNames::of<FlowNames>();
		const Engine *engine = Engine::get_singleton();
		const bool in_physics = engine->is_in_physics_frame();
		const uint64_t now = in_physics ? engine->get_physics_frames() : engine->get_process_frames();
		const uint64_t entered_in = machine->slot(index).get(in_physics ? names.physics_frame : names.frame, 0);
		if (now <= entered_in) {
			return;
		}
		machine->finish(index);
		const StringName event = setting_of<&SCNextFrameEventAction::event_name>(action);
		if (event.is_empty()) {
			verbs::say<&SCNextFrameEventAction::warn_next_frame>(action, machine, index);
		} else {
			machine->send_event(event);
		}
	}
};

class RandomEvent : public SCNativeAction {
	static double weight_of(const Array &weights, int64_t at) { return at < weights.size() ? MAX(values::as_number(weights[at]), 0.0) : 1.0; }

	static int64_t choose(int64_t count, const Array &weights) {
		double total = 0.0;
		for (int64_t i = 0; !weights.is_empty() && i < count; i++) {
			total += weight_of(weights, i);
		}
		if (!(total > 0.0)) {
			return UtilityFunctions::randi() % count;
		}
		double left = UtilityFunctions::randf() * total;
		for (int64_t i = 0; i < count; i++) {
			left -= weight_of(weights, i);
			if (left <= 0.0) {
				return i;
			}
		}
		return 0;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->finish(index);
		const TypedArray<StringName> events = setting_of<&SCRandomEventAction::events>(action);
		if (events.is_empty()) {
			verbs::say<&SCRandomEventAction::warn_random>(action, machine, index, 0);
			return;
		}
		const StringName event = events[choose(events.size(), setting_of<&SCRandomEventAction::weights>(action))];
		if (event.is_empty()) {
			verbs::say<&SCRandomEventAction::warn_random>(action, machine, index, 1);
		} else {
			machine->send_event(event);
		}
	}
};

// The exact time left lies in the slot; the variable shows it, and hands in what others add to it.
class Timer : public SCNativeAction {
	static bool is_empty(const Variant &held) { return held.get_type() == Variant::NIL; }

	static bool may_count_in(SCMachineBase *machine, SCMachineAction *action, const StringName &variable) {
		if (variable.is_empty()) {
			verbs::warn(machine, action, "no variable is picked, so it counts unseen. Pick the one to count down beside Variable Name.");
			return false;
		}
		const Variant held = machine->get_value(variable);
		if (is_empty(held) || values::is_number(held)) {
			return true;
		}
		verbs::warn(machine, action,
				vformat("%s holds %s, which cannot be counted down, so it counts unseen and leaves %s as it is. Pick a float or an int beside Variable Name.",
						variable, values::kind_in_words(held), variable));
		return false;
	}

	// An int shows the seconds begun, so that it reaches zero when the time is up and not before.
	static void show(SCMachineBase *machine, Dictionary memory, const StringName &variable, double left) {
		const FlowNames &names = NativeNames::of<FlowNames>();
		const bool whole = machine->get_value(variable).get_type() == Variant::INT;
		const Variant shown = whole ? Variant(ValueKinds::whole_part(std::ceil(left))) : Variant(left);
		if (machine->has_value(variable) && ValueKinds::is_same(machine->get_value(variable), shown)) {
			memory[names.shown] = shown;
			return;
		}
		StillHere here(machine);
		machine->set_value(variable, shown);
		if (here) {
			// Its limits may have had a say.
			memory[names.shown] = machine->get_value(variable);
		}
	}

	static void time_up(SCMachineBase *machine, SCMachineAction *action, int index) {
		machine->finish(index);
		machine->send_event(setting_of<&SCTimerAction::event_name>(action));
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const FlowNames &names = NativeNames::of<FlowNames>();
		StillHere here(machine);
		const StringName variable = setting_of<&SCTimerAction::variable_name>(action);
		const bool counts_in = may_count_in(machine, action, variable);
		if (!here) {
			return;
		}
		double left = setting_of<&SCTimerAction::seconds>(action);
		if (counts_in && !setting_of<&SCTimerAction::start_over>(action) && machine->has_value(variable)) {
			left = values::as_number(machine->get_value(variable));
		}
		left = MAX(left, 0.0);
		Dictionary memory = machine->slot(index);
		memory[names.left] = left;
		memory[names.counts_in] = counts_in;
		if (counts_in) {
			show(machine, memory, variable, left);
		}
		if (here && left <= 0.0) {
			time_up(machine, action, index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const FlowNames &names = NativeNames::of<FlowNames>();
		StillHere here(machine);
		Dictionary memory = machine->slot(index);
		const StringName variable = setting_of<&SCTimerAction::variable_name>(action);
		const bool counts_in = memory.get(names.counts_in, false);
		double left = memory.get(names.left, 0.0);
		if (counts_in) {
			const Variant now = machine->get_value(variable);
			const Variant shown = memory.get(names.shown, now);
			if (values::is_number(now) && double(now) != double(shown)) {
				left += double(now) - double(shown);
			}
		}
		left = MAX(left - delta, 0.0);
		memory[names.left] = left;
		if (counts_in) {
			show(machine, memory, variable, left);
		}
		if (here && left <= 0.0) {
			time_up(machine, action, index);
		}
	}
};

const AddKinds added = {
	add_kind<SCGetEventDataAction, GetEventData>(),
	add_kind<SCGoToStateAction, GoToState>(),
	add_kind<SCNextFrameEventAction, NextFrameEvent>(),
	add_kind<SCRandomEventAction, RandomEvent>(),
	add_kind<SCTimerAction, Timer>(),
};

} // namespace
