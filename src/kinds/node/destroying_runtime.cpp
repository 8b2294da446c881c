// The compiled runtime of Queue Free.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/node/destroying.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/window.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

struct Names {
	StringName doomed = "doomed";
};

class QueueFree : public SCNativeAction {
	using Kind = SCQueueFreeAction;

	static constexpr int TIME_IS_UP = 3;

	static void remove(SCMachineBase *machine, SCMachineAction *action, Node *node) {
		if (node->is_inside_tree() && node == node->get_tree()->get_root()) {
			verbs::warn(machine, action, "the top of the tree holds the whole game, so it stays. Pick a node in the scene under Node, or use Quit Game.");
		} else if (!node->is_queued_for_deletion()) {
			node->queue_free();
		}
	}

	// Who is in the group is asked when its time has come; a node alone is settled as the wait begins.
	static void remove_all(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StringName group = setting_of<&Kind::group>(action);
		if (!group.is_empty()) {
			const TypedArray<Node> nodes = machine->is_inside_tree() ? machine->get_tree()->get_nodes_in_group(group) : TypedArray<Node>();
			for (int i = 0; i < nodes.size(); i++) {
				if (Node *node = Object::cast_to<Node>(nodes[i].get_validated_object())) {
					remove(machine, action, node);
				}
			}
			return;
		}
		const uint64_t id = uint64_t(int64_t(machine->slot(index).get(NativeNames::of<Names>().doomed, 0)));
		if (Node *node = id != 0 ? Object::cast_to<Node>(ObjectDB::get_instance(ObjectID(id))) : nullptr) {
			remove(machine, action, node);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const bool alone = setting_of<&Kind::group>(action).is_empty();
		const Node *node = alone ? verbs::node_or_warn<&Kind::node_path>(machine, action) : nullptr;
		if (alone && node == nullptr) {
			machine->finish(index);
			return;
		}
		const double delay = MAX(checked::number<&Kind::delay>(machine, action), 0.0);
		machine->slot(index)[NativeNames::of<Names>().doomed] = node != nullptr ? int64_t(node->get_instance_id()) : int64_t(0);
		machine->finish_after(index, delay, callable_mp_static(&SCNativeActions::call).bind(TIME_IS_UP, action, machine, index, 0.0));
	}

	void other(SCMachineBase *machine, SCMachineAction *action, int index, int what) override {
		if (what == TIME_IS_UP) {
			remove_all(machine, action, index);
		}
	}
};

const AddKinds added = {
	add_kind<SCQueueFreeAction, QueueFree>(),
};

} // namespace
