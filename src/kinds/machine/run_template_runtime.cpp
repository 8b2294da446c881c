// The compiled runtime of Run Template: a machine of its own for another template, for as long as the
// state runs.

#include "action/add_kind.hpp"
#include "action/add_later.hpp"
#include "action/shared_verbs.hpp"
#include "action/words.hpp"
#include "kinds/machine/run_template.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine/native_names.hpp"
#include "machine/own_copy.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/callable_custom.hpp>

namespace {

struct RunTemplateNames {
	StringName inner = "inner";
	StringName done = "done";
	StringName is_end_state = "is_end_state";
	StringName ready = "ready";
};

SCMachineBase *machine_of(uint64_t id) {
	return Object::cast_to<SCMachineBase>(ObjectDB::get_instance(id));
}

// Each write may run a game's code, which may free either machine.
void take_back(uint64_t machine_id, uint64_t inner_id, const TypedArray<StringName> &shared) {
	for (int64_t i = 0; i < shared.size(); i++) {
		const StringName name = shared[i];
		SCMachineBase *machine = machine_of(machine_id);
		const SCMachineBase *inner = machine_of(inner_id);
		if (machine == nullptr || inner == nullptr) {
			return;
		}
		if (!name.is_empty() && inner->has_value(name)) {
			machine->set_value(name, inner->get_value(name));
		}
	}
}

// Hears the inner machine, and ends the action when that has done its work.
class TemplateHeard final : public CallableCustom {
public:
	enum Way {
		STATE_CHANGED,
		EVENT_SENT,
	};

	TemplateHeard(Way heard_way, uint64_t outer, uint64_t inner, uint64_t action, const Dictionary &slot, const Callable &finish) :
			way(heard_way), machine_id(outer), inner_id(inner), action_id(action), memory(slot), finisher(finish) {}

	uint32_t hash() const override { return uint32_t(inner_id * 2 + way); }
	String get_as_text() const override { return "SCRunTemplateAction"; }
	CompareEqualFunc get_compare_equal_func() const override { return &TemplateHeard::same; }
	CompareLessFunc get_compare_less_func() const override { return &TemplateHeard::before; }
	bool is_valid() const override { return true; }
	ObjectID get_object() const override { return ObjectID(machine_id); }

	void call(const Variant **arguments, int count, Variant &answer, GDExtensionCallError &error) const override {
		error.error = GDEXTENSION_CALL_OK;
		answer = Variant();
		const SCRunTemplateAction *action = Object::cast_to<SCRunTemplateAction>(ObjectDB::get_instance(action_id));
		if (action == nullptr || count < 1) {
			return;
		}
		if (way == STATE_CHANGED) {
			// The state it left comes first, and the one it has entered second.
			Object *state = count >= 2 ? arguments[1]->get_validated_object() : nullptr;
			if (state == nullptr || !state->get(NativeNames::of<RunTemplateNames>().is_end_state).booleanize()) {
				return;
			}
		} else if (action->done_event.is_empty() || StringName(*arguments[0]) != action->done_event) {
			return;
		}
		// Ending the action ends the inner machine, and with it the connection that holds this very call.
		done(machine_id, inner_id, Ref<SCRunTemplateAction>(const_cast<SCRunTemplateAction *>(action)), Dictionary(memory), Callable(finisher));
	}

private:
	Way way;
	uint64_t machine_id;
	uint64_t inner_id;
	uint64_t action_id;
	Dictionary memory;
	Callable finisher;

	static void done(uint64_t machine_id, uint64_t inner_id, const Ref<SCRunTemplateAction> &action, Dictionary memory, const Callable &finisher) {
		const StringName &is_done = NativeNames::of<RunTemplateNames>().done;
		if (memory.get(is_done, false).booleanize() || machine_of(machine_id) == nullptr || machine_of(inner_id) == nullptr) {
			return;
		}
		memory[is_done] = true;
		take_back(machine_id, inner_id, action->shared_variables);
		finisher.call();
	}
	static bool same(const CallableCustom *left, const CallableCustom *right) { return left == right; }
	static bool before(const CallableCustom *left, const CallableCustom *right) { return left < right; }
};

class RunTemplate : public SCNativeAction {
	// More than any design has by intention. Each of them starts within the start of the one around it.
	static constexpr int MOST_INSIDE_ONE_ANOTHER = 32;

	static String name_for(const Ref<SCMachineTemplate> &design) {
		const String path = design->get_path();
		return (path.is_empty() ? String("Template") : path.get_file().get_basename().to_pascal_case()) + "Running";
	}

	static Dictionary handed_values(SCMachineBase *machine, const TypedArray<StringName> &shared) {
		Dictionary handed;
		for (int64_t i = 0; i < shared.size(); i++) {
			const StringName name = shared[i];
			if (machine->has_value(name)) {
				handed[name] = own_copy(machine->get_value(name));
			}
		}
		return handed;
	}

	// How many machines there are of which each runs the next, down to this one.
	static int machines_around(const SCMachineBase *machine) {
		int around = 0;
		while (machine != nullptr && around < MOST_INSIDE_ONE_ANOTHER) {
			around++;
			machine = machine_of(machine->run().run_by);
		}
		return around;
	}

	static bool stand_in_one_tree(Node *first, Node *second) {
		return (first->is_inside_tree() && second->is_inside_tree()) || first == second || first->is_ancestor_of(second) || second->is_ancestor_of(first);
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const MachineNames &names = MachineNames::shared();
		const RunTemplateNames &own = NativeNames::of<RunTemplateNames>();
		StillHere here(machine);
		// Nothing to run holds nothing up.
		const Ref<SCMachineTemplate> design = setting_of<&SCRunTemplateAction::machine_template>(action);
		Node *target = machine->target_node();
		if (design.is_null()) {
			verbs::warn_whole(machine, action, 0,
					vformat("Run Template on %s has no Template picked, so nothing runs and the state carries on at once. Pick the template to run.",
							machine->name_in_messages()));
			machine->finish(index);
			return;
		}
		Node *parent = machine->get_parent();
		if (target == nullptr || (parent != nullptr && !stand_in_one_tree(parent, target))) {
			verbs::warn(machine, action,
					vformat("this Machine has no node to work on, so %s has nothing to run on and the state carries on at once.",
							name_for(design).trim_suffix("Running")));
			machine->finish(index);
			return;
		}
		if (machines_around(machine) >= MOST_INSIDE_ONE_ANOTHER) {
			verbs::warn(machine, action,
					vformat("%d machines run inside one another here, which means that a template runs itself, so no further one was begun and the state "
							"carries on at once. Take one Run Template out of the circle.",
							MOST_INSIDE_ONE_ANOTHER));
			machine->finish(index);
			return;
		}
		SCMachine *inner = memnew(SCMachine);
		inner->set_name(name_for(design));
		inner->machine_template = design;
		inner->autostart = false;
		inner->run().run_by = machine->get_instance_id();
		Dictionary memory = machine->slot(index);
		memory[own.inner] = inner;
		// It is heard from its first state on.
		const uint64_t inner_id = inner->get_instance_id();
		const Callable finisher = machine->finisher(index);
		inner->connect(names.state_changed,
				Callable(memnew(
						TemplateHeard(TemplateHeard::STATE_CHANGED, machine->get_instance_id(), inner_id, action->get_instance_id(), memory, finisher))));
		inner->connect(names.event_sent,
				Callable(memnew(TemplateHeard(TemplateHeard::EVENT_SENT, machine->get_instance_id(), inner_id, action->get_instance_id(), memory, finisher))));
		ERR_FAIL_NULL(parent);
		inner->target_path = NodePath("../" + String(parent->get_path_to(target)));
		inner->handed_values = handed_values(machine, setting_of<&SCRunTemplateAction::shared_variables>(action));
		if (!SCMachine::takes_children_now(parent)) {
			inner->connect(own.ready, Callable(inner, names.start), Object::CONNECT_ONE_SHOT);
			add_later::to(parent, inner);
			return;
		}
		parent->add_child(inner, true);
		if (here && ObjectDB::get_instance(inner_id) != nullptr) {
			inner->start();
		}
	}

	// The inner machine ends with the state, and what it had reached comes back all the same.
	void exit(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const RunTemplateNames &own = NativeNames::of<RunTemplateNames>();
		Dictionary memory = machine->slot(index);
		SCMachine *inner = Object::cast_to<SCMachine>(memory.get(own.inner, Variant()).get_validated_object());
		if (inner == nullptr) {
			return;
		}
		const uint64_t inner_id = inner->get_instance_id();
		if (!memory.get(own.done, false).booleanize()) {
			memory[own.done] = true;
			take_back(machine->get_instance_id(), inner_id, setting_of<&SCRunTemplateAction::shared_variables>(action));
		}
		inner = Object::cast_to<SCMachine>(machine_of(inner_id));
		if (inner == nullptr) {
			return;
		}
		inner->stop();
		inner = Object::cast_to<SCMachine>(machine_of(inner_id));
		if (inner != nullptr) {
			inner->queue_free();
		}
	}
};

const AddKinds added = {
	add_kind<SCRunTemplateAction, RunTemplate>(),
};

} // namespace
