// The compiled runtime of Look For Target: it sets the Perception node to work and turns its signals into events.

#include "action/add_kind.hpp"
#include "action/native_calls.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "kinds/ai/look_for_target.hpp"
#include "machine/native_names.hpp"
#include "steering/senses.hpp"

namespace {

using Kind = SCLookForTargetAction;

struct Names {
	StringName announce = "announce";
	StringName announce_lost = "announce_lost";
	// The Perception node, and the callables for what is spotted and for what is lost.
	StringName listening = "listening";
	StringName watch_group = "watch_group";
	StringName spotted = "spotted";
	StringName seen_again = "seen_again";
	StringName lost = "lost";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// One that has been freed since was known too.
bool is_somebody(const Variant &held) {
	bool was_freed = false;
	Object *object = held.get_validated_object_with_check(was_freed);
	return was_freed || Object::cast_to<Node>(object) != nullptr;
}

bool knows_somebody(SCMachineBase *machine, const SCMachineAction *action, Node *perception) {
	const StringName variable = setting_of<&Kind::store_target_in>(action);
	return (!variable.is_empty() && is_somebody(machine->get_value(variable))) || senses::target_of(perception) != nullptr;
}

void on_spotted(SCMachineBase *machine, SCMachineAction *action, int index, const Array &handed_over) {
	const StillHere here(machine);
	const Variant first = handed_over.is_empty() ? Variant() : handed_over[0];
	Node *target = Object::cast_to<Node>(first.get_validated_object());
	if (target == nullptr) {
		const Array listening = machine->slot(index).get(names().listening, Array());
		target = listening.is_empty() ? nullptr : senses::target_of(Object::cast_to<Node>(listening[0].get_validated_object()));
	}
	verbs::keep_if_named<&Kind::store_target_in>(machine, action, target);
	const StringName event = setting_of<&Kind::spotted_event>(action);
	if (here && !event.is_empty()) {
		machine->send_event_from_signal(event, first);
	}
}

void on_lost(SCMachineBase *machine, SCMachineAction *action, int, const Array &) {
	const StringName event = setting_of<&Kind::lost_event>(action);
	if (!event.is_empty()) {
		machine->send_event_from_signal(event, Variant());
	}
}

class LookForTarget : public SCNativeAction {
	static void listen(SCMachineBase *machine, SCMachineAction *action, int index, Node *perception) {
		const Callable spotted = ActionCall::make("Look For Target (spotted)", machine, action, index, on_spotted);
		const Callable lost = ActionCall::make("Look For Target (lost)", machine, action, index, on_lost);
		perception->connect(names().spotted, spotted);
		perception->connect(names().seen_again, spotted);
		perception->connect(names().lost, lost);
		Dictionary slot = machine->slot(index);
		slot[names().listening] = Array::make(perception, spotted, lost);
	}

	static void drop(Node *perception, const StringName &signal, const Callable &call) {
		if (perception->is_connected(signal, call)) {
			perception->disconnect(signal, call);
		}
	}

	static Node *perception_of(SCMachineBase *machine, SCMachineAction *action) {
		return senses::of(values::node_of(machine, setting_of<&Kind::body_path>(action)));
	}

	// True when there is something to tell on the first update.
	static bool start(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StillHere here(machine);
		const Weak<Node> perception(perception_of(machine, action));
		if (perception.get() == nullptr) {
			action->call(*WarningOf<&Kind::warn_look>::name, machine);
			return false;
		}
		const bool looks = setting_of<&Kind::look_at_once>(action);
		const StringName group = setting_of<&Kind::look_for>(action);
		if (!group.is_empty()) {
			perception.get()->set(names().watch_group, group);
		}
		const bool knew = knows_somebody(machine, action, perception.get());
		if (looks) {
			senses::look_now(perception.get());
		}
		if (!here || perception.get() == nullptr) {
			return false;
		}
		Node *target = senses::target_of(perception.get());
		const bool announce_lost = knew && target == nullptr;
		const bool announce = target != nullptr && senses::can_see_target(perception.get());
		verbs::keep_if_named<&Kind::store_target_in>(machine, action, target);
		if (!here || perception.get() == nullptr) {
			return false;
		}
		Dictionary slot = machine->slot(index);
		slot[names().announce] = announce;
		slot[names().announce_lost] = announce_lost;
		listen(machine, action, index, perception.get());
		return announce || announce_lost;
	}

	static bool take(Dictionary slot, const StringName &what) {
		const bool was = slot.get(what, false).booleanize();
		slot[what] = false;
		return was;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		if (!start(machine, action, index) && here) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		const StillHere here(machine);
		if (take(machine->slot(index), names().announce_lost)) {
			verbs::send<&Kind::lost_event>(machine, action);
		}
		if (here && take(machine->slot(index), names().announce)) {
			if (Node *target = senses::target_of(perception_of(machine, action))) {
				verbs::send<&Kind::spotted_event>(machine, action, target);
			}
		}
		if (here) {
			machine->finish(index);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override {
		Dictionary slot = machine->slot(index);
		const Array listening = slot.get(names().listening, Array());
		slot.erase(names().listening);
		if (Node *perception = listening.is_empty() ? nullptr : Object::cast_to<Node>(listening[0].get_validated_object())) {
			drop(perception, names().spotted, listening[1]);
			drop(perception, names().seen_again, listening[1]);
			drop(perception, names().lost, listening[2]);
		}
	}
};

const AddKinds added = {
	add_kind<SCLookForTargetAction, LookForTarget>(),
};

} // namespace
