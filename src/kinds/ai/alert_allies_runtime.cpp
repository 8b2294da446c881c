// The compiled runtime of Alert Allies.

#include "action/add_kind.hpp"
#include "action/places.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "kinds/ai/alert_allies.hpp"
#include "machine_node/sc_machine.hpp"
#include "steering/dealing.hpp"
#include "steering/senses.hpp"

#include <godot_cpp/classes/scene_tree.hpp>

namespace {

using Kind = SCAlertAlliesAction;

// One alarm: what is told is taken before anybody hears it, who may do anything.
class Alarm {
	Weak<SCMachineBase> sender;
	Weak<Node> body;
	Weak<Node> subject;
	StringName event;
	double carries;
	bool hands_over;

	// Endless and what is no number reach everybody, as nothing does.
	bool is_in_reach(const Node *ally) const { return !(carries > 0.0) || places::distance_between(body.get(), ally) <= carries; }

	// False when there is nobody in it to hear.
	bool tell(Node *ally) const {
		const Weak<Node> later(ally);
		Node *perception = senses::of(ally);
		const bool has_machine = SCMachine::machine_of(ally) != nullptr;
		if (hands_over && perception != nullptr && subject.get() != nullptr) {
			senses::notice(perception, subject.get());
		}
		if (SCMachine *its = SCMachine::machine_of(later.get())) {
			if (!event.is_empty()) {
				SCMachineBase::note_sender(event, sender.get());
				its->send_event(event, subject.get());
			}
		}
		return has_machine || perception != nullptr;
	}

public:
	PackedStringArray unheard;

	Alarm(SCMachineBase *machine, const SCMachineAction *action, Node *from_body, Node *about) :
			sender(machine), body(from_body), subject(about), event(setting_of<&Kind::event_name>(action)),
			carries(values::number_of(machine, setting_of<&Kind::within>(action), setting_of<&Kind::within_variable>(action))),
			hands_over(setting_of<&Kind::give_them_the_target>(action)) {}

	int64_t spread(const Array &allies) {
		int64_t told = 0;
		for (int64_t i = 0; i < allies.size(); i++) {
			Node *ally = Object::cast_to<Node>(allies[i].get_validated_object());
			if (body.get() == nullptr) {
				break;
			}
			if (ally == nullptr || ally == body.get() || !ally->is_inside_tree() || !is_in_reach(ally)) {
				continue;
			}
			const StringName name = ally->get_name();
			if (tell(ally)) {
				told++;
			} else {
				unheard.push_back(name);
			}
		}
		return told;
	}
};

class AlertAllies : public SCNativeAction {
	static int64_t raise(SCMachineBase *machine, SCMachineAction *action, int index) {
		Node *body = verbs::node_or_warn<&Kind::body_path>(machine, action);
		const StringName group = setting_of<&Kind::ally_group>(action);
		if (group.is_empty()) {
			verbs::warn(machine, action, "no group is picked, so nobody is told. Pick one under Ally Group.");
			return 0;
		}
		if (body == nullptr || !body->is_inside_tree()) {
			return 0;
		}
		bool is_wrong = false;
		Node *subject = dealing::found(machine, setting_of<&Kind::target_variable>(action), body, is_wrong);
		const StillHere here(machine);
		Alarm alarm(machine, action, body, subject);
		const int64_t told = alarm.spread(body->get_tree()->get_nodes_in_group(group));
		if (here && told == 0 && !alarm.unheard.is_empty()) {
			verbs::say<&Kind::warn_deaf>(action, machine, index, alarm.unheard);
		}
		return told;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		const int64_t told = raise(machine, action, index);
		if (here) {
			verbs::keep_if_named<&Kind::store_count_in>(machine, action, told);
		}
		if (here && told == 0) {
			verbs::send<&Kind::nobody_event>(machine, action);
		}
		if (here) {
			machine->finish(index);
		}
	}
};

const AddKinds added = {
	add_kind<SCAlertAlliesAction, AlertAllies>(),
};

} // namespace
