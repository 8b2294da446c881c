#include "steering/dealing.hpp"

#include "action/shared_verbs.hpp"
#include "machine/machine_run.hpp"
#include "machine/native_names.hpp"
#include "machine/value_kinds.hpp"
#include "steering/senses.hpp"

namespace dealing {

namespace {

struct Names {
	StringName condition = "condition";
	StringName told_of = "told_of";
};

// What can be wrong, each with a sentence of its own.
enum Fault { NO_PERCEPTION = 100, NO_VARIABLE, NO_NODE };

Fault fault_of(SCMachineBase *machine, const StringName &target_variable) {
	if (target_variable.is_empty()) {
		return NO_PERCEPTION;
	}
	return machine->has_value(target_variable) ? NO_NODE : NO_VARIABLE;
}

} // namespace

// Conditions that are asked as one share what they remember, hence the kind's id.
bool is_news(SCMachineBase *machine, const Object *kind, const StringName &target_variable, int index) {
	const bool is_condition = Object::cast_to<SCMachineCondition>(kind) != nullptr;
	if (is_condition && machine->run().action_asking() != index) {
		return true;
	}
	const StringName &told_of = NativeNames::of<Names>().told_of;
	const Variant what = int64_t(uint64_t(kind->get_instance_id()) * 4 + uint64_t(fault_of(machine, target_variable) - NO_PERCEPTION));
	Dictionary slot = is_condition ? machine->condition_slot() : machine->slot(index);
	if (slot.get(told_of, Variant()) == what) {
		return false;
	}
	slot[told_of] = what;
	return true;
}

Node *found(SCMachineBase *machine, const StringName &target_variable, Node *body, bool &is_wrong) {
	is_wrong = false;
	if (body == nullptr) {
		return nullptr;
	}
	if (target_variable.is_empty()) {
		Node *perception = senses::of(body);
		is_wrong = perception == nullptr;
		return senses::target_of(perception);
	}
	const Variant held = machine->get_value(target_variable);
	is_wrong = held.get_type() == Variant::NIL ? !machine->has_value(target_variable) : held.get_type() != Variant::OBJECT;
	return Object::cast_to<Node>(held.get_validated_object());
}

void warn(SCMachineBase *machine, const Object *kind, const StringName &target_variable, Node *body) {
	if (machine == nullptr) {
		return;
	}
	const String name = verbs::kind_in_palette(kind);
	const String machine_name = machine->name_in_messages();
	const Fault fault = fault_of(machine, target_variable);
	if (fault == NO_PERCEPTION) {
		const StringName body_name = body != nullptr ? body->get_name() : StringName();
		verbs::warn_whole(machine, kind, fault,
				vformat("%s on %s: %s has no Perception node to find anything with, and no Target Variable is named, so there is never anything to deal with. "
						"Right-click %s > Give It > Perception, or name a variable holding the target.",
						name, machine_name, body_name, body_name));
	} else if (fault == NO_VARIABLE) {
		verbs::warn_whole(machine, kind, fault,
				vformat("%s on %s: there is no variable called %s, so there is nothing to deal with. Pick one of the template's variables, or leave it empty "
						"for what the Perception node found.",
						name, machine_name, target_variable));
	} else {
		verbs::warn_whole(machine, kind, fault,
				vformat("%s on %s: %s holds %s, which is not a node, so there is nothing to deal with. Put a node in it, such as the one Look For Target "
						"stores.",
						name, machine_name, target_variable, words::text_of(machine->get_value(target_variable))));
	}
}

namespace {

SCMachineAction *any_action_at(SCMachineBase *machine, int64_t index) {
	const RunRow *at = machine != nullptr ? machine->run().running_or_last() : nullptr;
	const bool is_there = at != nullptr && at->table != nullptr && index >= 0 && index < int64_t(at->table->actions.size());
	return is_there ? at->table->actions[uint32_t(index)].compiled : nullptr;
}

template <class Kind>
Kind *if_it_is(Kind *kind, const ClassRow *row) {
	return kind != nullptr && kind->class_row() != nullptr && kind->class_row()->is_or_extends(row) ? kind : nullptr;
}

} // namespace

SCMachineAction *action_at(SCMachineBase *machine, int64_t index, const ClassRow *row) {
	return if_it_is(any_action_at(machine, index), row);
}

SCMachineCondition *condition_at(SCMachineBase *machine, int64_t index, const ClassRow *row) {
	const SCMachineAction *asks = any_action_at(machine, index);
	const Variant asked = asks != nullptr ? asks->get(NativeNames::of<Names>().condition) : Variant();
	return if_it_is(Object::cast_to<SCMachineCondition>(asked.get_validated_object()), row);
}

} // namespace dealing
