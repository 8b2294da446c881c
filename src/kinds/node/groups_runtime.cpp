// Compiled runtimes of the kinds that work with groups.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/node/groups.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

#include <cmath>

namespace {

struct GroupNames {
	StringName last = "last";
};

class Group : public OnceOrRepeating<Group> {
	using Kind = SCGroupAction;

	static Array members(SCMachineBase *machine, const StringName &group, const Node *but_for) {
		Array found;
		if (!machine->is_inside_tree()) {
			return found;
		}
		const TypedArray<Node> all = machine->get_tree()->get_nodes_in_group(group);
		for (int64_t i = 0; i < all.size(); i++) {
			Node *node = Object::cast_to<Node>(all[i]);
			if (node != nullptr && node != but_for && !node->is_queued_for_deletion()) {
				found.push_back(node);
			}
		}
		return found;
	}

	// Nil when none of them has a place.
	static Variant nearest(const Node *from, const Array &nodes) {
		Variant found;
		double shortest = INFINITY;
		for (int64_t i = 0; i < nodes.size(); i++) {
			const double distance = places::distance_between(from, nodes[i]);
			if (distance < shortest) {
				shortest = distance;
				found = nodes[i];
			}
		}
		return found;
	}

	static void ask(SCMachineBase *machine, SCMachineAction *action, Kind::Operation operation, const Node *node, const StringName &group) {
		const StillHere here(machine);
		const Array found = members(machine, group, setting_of<&Kind::exclude_self>(action) ? node : nullptr);
		Variant answer;
		switch (operation) {
			case Kind::COUNT:
				answer = found.size();
				break;
			case Kind::GET_THE_NEAREST:
				if (!places::has_a_place(node)) {
					verbs::warn(machine, action,
							vformat("%s, so nothing is near it.",
									places::no_place_words(node, verbs::setting_in_inspector(verbs::name_of<&Kind::node_path>()))));
					return;
				}
				answer = nearest(node, found);
				break;
			case Kind::GET_ONE_AT_RANDOM:
				answer = found.is_empty() ? Variant() : found[UtilityFunctions::randi_range(0, found.size() - 1)];
				break;
			default:
				answer = found;
				break;
		}
		const bool is_empty = found.is_empty();
		if (answer.get_type() == Variant::NIL) {
			verbs::let_go(machine, setting_of<&Kind::store_in>(action));
		} else if (setting_of<&Kind::nothing_event>(action).is_empty() || !setting_of<&Kind::store_in>(action).is_empty()) {
			verbs::keep<&Kind::store_in>(machine, action, answer, "the answer");
		}
		if (here && is_empty) {
			verbs::send<&Kind::nothing_event>(machine, action);
		}
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		Node *node = verbs::node_or_warn<&Kind::node_path>(machine, action);
		if (node == nullptr) {
			return;
		}
		const StringName group = setting_of<&Kind::group>(action);
		if (group.is_empty()) {
			verbs::warn(machine, action, "it names no group, so nothing was done. Type one under Group.");
			return;
		}
		const auto operation = checked::choice<&Kind::operation>(machine, action, Kind::GET_ALL);
		if (operation == Kind::ADD_A_NODE) {
			node->add_to_group(group);
		} else if (operation != Kind::TAKE_A_NODE_OUT) {
			ask(machine, action, operation, node, group);
		} else if (node->is_in_group(group)) {
			node->remove_from_group(group);
		}
	}
};

class GroupSwitch : public OnceOrRepeating<GroupSwitch> {
	using Kind = SCGroupSwitchAction;

	static int64_t first_of_its(const Node *node, const TypedArray<StringName> &groups) {
		for (int64_t i = 0; i < groups.size(); i++) {
			const StringName group = groups[i];
			if (!group.is_empty() && node->is_in_group(group)) {
				return i;
			}
		}
		return -1;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const Node *node = verbs::node_or_warn<&Kind::node_path>(machine, action);
		if (node == nullptr) {
			return;
		}
		const StillHere here(machine);
		const TypedArray<StringName> groups = setting_of<&Kind::groups>(action);
		const TypedArray<StringName> events = setting_of<&Kind::events>(action);
		if (groups.is_empty()) {
			verbs::warn(machine, action, "it has no groups to look for. Add one under Groups, and the event that it sends under Events.");
		}
		const int64_t found = first_of_its(node, groups);
		StringName event;
		if (found < 0) {
			event = setting_of<&Kind::otherwise_event>(action);
		} else if (found < events.size()) {
			event = events[found];
		}
		if (found >= 0 && event.is_empty()) {
			verbs::warn(machine, action,
					vformat("%s is in %s, but that group has no event beside it, so nothing was sent. Give each group its event.", node->get_name(),
							groups[found]));
		}
		if (!here) {
			return;
		}
		const StringName &last = NativeNames::of<GroupNames>().last;
		Dictionary memory = machine->slot(index);
		const bool same = memory.has(last) && int64_t(memory[last]) == found;
		memory[last] = found;
		if (!same || !action->repeats() || !setting_of<&Kind::only_when_it_changes>(action)) {
			verbs::send(machine, event);
		}
	}
};

const AddKinds added = {
	add_kind<SCGroupAction, Group>(),
	add_kind<SCGroupSwitchAction, GroupSwitch>(),
};

} // namespace
