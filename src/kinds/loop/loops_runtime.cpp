// Compiled runtimes of the kinds that go round in a ring of states, one step a visit.

#include "action/add_kind.hpp"
#include "action/shared_verbs.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "kinds/loop/loops.hpp"
#include "machine/still_here.hpp"
#include "machine/value_kinds.hpp"

namespace {

// How far a walk has got, kept in a variable so that it survives leaving the state.
class Progress {
	SCMachineBase *machine;
	StringName variable;

public:
	// Without a name the walk would never get past its first step, so it goes by its kind's usual one.
	Progress(SCMachineBase *of_machine, const SCMachineAction *action, const StringName &named, const char *usual) : machine(of_machine), variable(named) {
		if (variable.is_empty()) {
			variable = usual;
			verbs::warn_whole(machine, action, 10,
					vformat("%s on %s has no Progress Variable, so it keeps its place in a variable called \"%s\". Type a name beside Progress Variable.",
							verbs::kind_in_palette(action), machine->name_in_messages(), variable));
		}
	}
	int64_t place() const { return ValueKinds::whole_part(values::as_number(machine->get_value(variable, 0))); }
	void move_to(int64_t place) const { machine->set_value(variable, place); }
};

// The event is taken in a finished state, so each of these finishes before it does anything.

class ForEach : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		// The list as it is now: what the ring does to the variable does not disturb this visit.
		machine->finish(index);
		StillHere here(machine);
		const StringName name = setting_of<&SCForEachAction::list_variable>(action);
		const Variant held = machine->get_value(name);
		Array list;
		if (held.get_type() == Variant::ARRAY) {
			list = Array(held).duplicate();
		} else {
			verbs::say<&SCForEachAction::warn_for_each>(action, machine, index, machine->has_value(name) ? 1 : 0, held);
		}
		if (!here) {
			return;
		}
		const Progress progress(machine, action, setting_of<&SCForEachAction::progress_variable>(action), SCForEachAction::PROGRESS);
		const int64_t place = progress.place();
		if (place >= 0 && place < list.size()) {
			const StringName item_in = setting_of<&SCForEachAction::store_item_in>(action);
			if (!item_in.is_empty()) {
				machine->set_value(item_in, list[place]);
			}
			const StringName index_in = setting_of<&SCForEachAction::store_index_in>(action);
			if (here && !index_in.is_empty()) {
				machine->set_value(index_in, place);
			}
			if (here) {
				progress.move_to(place + 1);
			}
			if (here) {
				machine->progress_made(action, int(list.size()));
				machine->send_event(setting_of<&SCForEachAction::next_event>(action));
			}
			return;
		}
		if (setting_of<&SCForEachAction::start_again_when_done>(action)) {
			progress.move_to(0);
		}
		if (here) {
			machine->send_event(setting_of<&SCForEachAction::done_event>(action));
		}
	}
};

class Repeat : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->finish(index);
		StillHere here(machine);
		const int64_t times = ValueKinds::whole_part(
				values::number_of(machine, double(setting_of<&SCRepeatAction::times>(action)), setting_of<&SCRepeatAction::times_variable>(action)));
		const Progress progress(machine, action, setting_of<&SCRepeatAction::progress_variable>(action), SCRepeatAction::PROGRESS);
		const int64_t count = progress.place();
		if (count < times) {
			progress.move_to(count + 1);
			if (here) {
				machine->progress_made(action, int(MIN(times, int64_t(INT32_MAX))));
				const StringName again = setting_of<&SCRepeatAction::again_event>(action);
				if (again.is_empty()) {
					verbs::warn(machine, action, "it has no event to send each time, so it stays at the first. Type one under Again Event.");
				}
				machine->send_event(again);
			}
			return;
		}
		if (setting_of<&SCRepeatAction::start_again_when_done>(action)) {
			progress.move_to(0);
		}
		if (here) {
			machine->send_event(setting_of<&SCRepeatAction::done_event>(action));
		}
	}
};

class Sequence : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->finish(index);
		StillHere here(machine);
		const TypedArray<StringName> events = setting_of<&SCSequenceAction::events>(action);
		if (events.is_empty()) {
			verbs::say<&SCSequenceAction::warn_no_events>(action, machine, index);
			return;
		}
		const Progress progress(machine, action, setting_of<&SCSequenceAction::progress_variable>(action), SCSequenceAction::PROGRESS);
		int64_t place = progress.place();
		if (place < 0 || place >= events.size()) {
			if (!setting_of<&SCSequenceAction::loop>(action)) {
				machine->send_event(setting_of<&SCSequenceAction::done_event>(action));
				return;
			}
			place = 0;
		}
		const StringName event = events[place];
		progress.move_to(place + 1);
		if (here) {
			machine->progress_made(action, int(events.size()));
			machine->send_event(event);
		}
	}
};

const AddKinds added = {
	add_kind<SCForEachAction, ForEach>(),
	add_kind<SCRepeatAction, Repeat>(),
	add_kind<SCSequenceAction, Sequence>(),
};

} // namespace
