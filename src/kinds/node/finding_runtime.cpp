// Compiled runtimes of the kinds that find nodes by where they are in the tree.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/node/finding.hpp"
#include "kinds/node/node_types.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace {

// What a node has to be to count. Those on their way out do not.
struct Wanted {
	String name;
	StringName type;
	StringName group;

	bool takes(const Node *node) const {
		return !node->is_queued_for_deletion() && (name.is_empty() || String(node->get_name()).match(name)) && (group.is_empty() || node->is_in_group(group)) &&
				(type.is_empty() || node_types::is_a(node, type));
	}
};

Node *first_under(const Node *above, const Wanted &wanted, bool recursive) {
	for (int i = 0; i < above->get_child_count(); i++) {
		Node *child = above->get_child(i);
		if (wanted.takes(child)) {
			return child;
		}
		if (recursive) {
			if (Node *found = first_under(child, wanted, true)) {
				return found;
			}
		}
	}
	return nullptr;
}

template <auto Field>
StringName type_in(const SCMachineAction *action) {
	return setting_of<Field>(action).strip_edges();
}

// Keeps the node that was found, or none.
template <auto Store>
void keep_node(SCMachineBase *machine, SCMachineAction *action, Node *node) {
	if (node != nullptr) {
		verbs::keep<Store>(machine, action, node, "the node");
	} else {
		verbs::let_go(machine, setting_of<Store>(action));
	}
}

class FindChild : public OnceOrRepeating<FindChild> {
	using Kind = SCFindChildAction;

	static String sought(const Wanted &wanted) {
		const String name = wanted.name.is_empty() ? String() : vformat(" called %s", wanted.name);
		const String group = wanted.group.is_empty() ? String() : vformat(" in the group %s", wanted.group);
		return vformat("%s%s%s", wanted.type.is_empty() ? String("node") : String(wanted.type), name, group);
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const Node *above = verbs::node_or_warn<&Kind::node_path>(machine, action);
		Wanted wanted;
		wanted.name = words::fill_in(setting_of<&Kind::child_name>(action), machine).strip_edges();
		wanted.type = type_in<&Kind::type>(action);
		wanted.group = setting_of<&Kind::only_group>(action);
		if (above == nullptr || !node_types::known_or_warn(machine, action, wanted.type, verbs::name_of<&Kind::type>(), "nothing was found")) {
			return;
		}
		if (wanted.name.is_empty() && wanted.type.is_empty() && wanted.group.is_empty()) {
			verbs::warn(machine, action, "there is nothing to look for, so nothing was found. Type a name under Child Name, or pick a kind under Type.");
			return;
		}
		const StillHere here(machine);
		Node *found = first_under(above, wanted, setting_of<&Kind::recursive>(action));
		const StringName nothing_event = setting_of<&Kind::nothing_event>(action);
		if (found == nullptr && nothing_event.is_empty()) {
			verbs::warn(machine, action,
					vformat("there is no %s under %s, so nothing was found. Check the name, or send an event under Nothing Event for when there is none.",
							sought(wanted), above->get_name()));
		}
		const Variant carried = found;
		const bool only_tells = setting_of<&Kind::store_in>(action).is_empty() && !setting_of<&Kind::found_event>(action).is_empty();
		if (!only_tells && here) {
			keep_node<&Kind::store_in>(machine, action, found);
		}
		if (here) {
			verbs::send_either<&Kind::found_event, &Kind::nothing_event>(machine, action, found != nullptr, carried);
		}
	}
};

class GetChildren : public OnceOrRepeating<GetChildren> {
	using Kind = SCGetChildrenAction;

	// Null for a number that there is none of.
	static Node *picked(SCMachineBase *machine, const SCMachineAction *action, const Array &children) {
		int64_t at = 0;
		const int64_t count = children.size();
		switch (checked::choice<&Kind::which>(machine, action, Kind::FIRST)) {
			case Kind::FIRST:
				break;
			case Kind::LAST:
				at = count - 1;
				break;
			case Kind::AT_RANDOM:
				at = count > 0 ? UtilityFunctions::randi_range(0, count - 1) : 0;
				break;
			case Kind::BY_NUMBER: {
				const int64_t number = setting_of<&Kind::number>(action);
				at = number > 0 ? number - 1 : number < 0 && number >= -count ? count + number : -1;
				if (at < 0 || at >= count) {
					verbs::warn(machine, action, vformat("there is no child number %d among %d, so none was kept. Change Number.", number, count));
				}
				break;
			}
		}
		return at >= 0 && at < count ? Object::cast_to<Node>(children[at].get_validated_object()) : nullptr;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const Node *above = verbs::node_or_warn<&Kind::node_path>(machine, action);
		Wanted wanted;
		wanted.type = type_in<&Kind::type>(action);
		wanted.group = setting_of<&Kind::only_group>(action);
		if (above == nullptr || !node_types::known_or_warn(machine, action, wanted.type, verbs::name_of<&Kind::type>(), "no child was looked at")) {
			return;
		}
		const StillHere here(machine);
		Array children;
		for (int i = 0; i < above->get_child_count(); i++) {
			Node *child = above->get_child(i);
			if (wanted.takes(child)) {
				children.push_back(child);
			}
		}
		const int64_t count = children.size();
		const StringName store_node_in = setting_of<&Kind::store_node_in>(action);
		const bool keeps_any = verbs::keep_each<&Kind::store_list_in, &Kind::store_count_in>(machine, action, { children, count });
		if (here && !store_node_in.is_empty()) {
			keep_node<&Kind::store_node_in>(machine, action, picked(machine, action, children));
		} else if (here && !keeps_any && setting_of<&Kind::nothing_event>(action).is_empty()) {
			verbs::warn(machine, action, "there is nowhere to keep what it sees. Pick a variable under Store List In, Store Count In or Store Node In.");
		}
		if (here && count == 0) {
			verbs::send<&Kind::nothing_event>(machine, action);
		}
	}
};

class GetParent : public OnceOrRepeating<GetParent> {
	using Kind = SCGetParentAction;

	static Node *found_above(const Node *node, const StringName &type, int64_t levels) {
		Node *at = node->get_parent();
		if (!type.is_empty()) {
			while (at != nullptr && !node_types::is_a(at, type)) {
				at = at->get_parent();
			}
			return at;
		}
		for (int64_t level = 1; level < levels && at != nullptr; level++) {
			at = at->get_parent();
		}
		return at;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const Node *node = verbs::node_or_warn<&Kind::node_path>(machine, action);
		const StringName type = type_in<&Kind::type>(action);
		if (node == nullptr || !node_types::known_or_warn(machine, action, type, verbs::name_of<&Kind::type>(), "nothing was found")) {
			return;
		}
		const StillHere here(machine);
		const int64_t levels = MAX(setting_of<&Kind::levels_up>(action), int64_t(1));
		Node *found = found_above(node, type, levels);
		if (found == nullptr && setting_of<&Kind::nothing_event>(action).is_empty()) {
			const String missing = type.is_empty() ? vformat("no node %d above it", levels) : vformat("no %s above it", type);
			verbs::warn(machine, action,
					vformat("%s has %s, so nothing was found. Pick another node, or send an event under Nothing Event for when there is none.",
							node->get_name(), missing));
		}
		keep_node<&Kind::store_in>(machine, action, found);
		if (here && found == nullptr) {
			verbs::send<&Kind::nothing_event>(machine, action);
		}
	}
};

const AddKinds added = {
	add_kind<SCFindChildAction, FindChild>(),
	add_kind<SCGetChildrenAction, GetChildren>(),
	add_kind<SCGetParentAction, GetParent>(),
};

} // namespace
