// Compiled runtimes of the kinds that decide whether nodes run.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/holders.hpp"
#include "action/runtime_shapes.hpp"
#include "action/weak.hpp"
#include "kinds/node/switching_on.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

struct SwitchNames {
	// On a node that is switched off: by the way to a node under it, what its properties were.
	StringName off = "quillstead_when_on";
	StringName ticket = "ticket";

	StringName process_mode = "process_mode";
	StringName visible = "visible";
	StringName disabled = "disabled";

	struct Part {
		StringName type;
		StringName property;
		Variant off;
	};
	// What goes on colliding or leading the way though its node does not run.
	Part parts[9] = {
		{ "CollisionObject2D", "disable_mode", 0 },
		{ "CollisionObject3D", "disable_mode", 0 },
		{ "TileMapLayer", "enabled", false },
		{ "GridMap", "collision_layer", 0 },
		{ "CSGShape3D", "use_collision", false },
		{ "NavigationRegion2D", "enabled", false },
		{ "NavigationRegion3D", "enabled", false },
		{ "NavigationLink2D", "enabled", false },
		{ "NavigationLink3D", "enabled", false },
	};
	StringName shapes[4] = { "CollisionShape2D", "CollisionPolygon2D", "CollisionShape3D", "CollisionPolygon3D" };
	StringName seen[4] = { "CanvasItem", "Node3D", "CanvasLayer", "Window" };
};

const SwitchNames &names() {
	return NativeNames::of<SwitchNames>();
}

template <class List>
bool is_one_of(const Node *node, const List &types) {
	for (const StringName &type : types) {
		if (node->is_class(type)) {
			return true;
		}
	}
	return false;
}

bool is_off(const Node *node) {
	return node->get_process_mode() == Node::PROCESS_MODE_DISABLED;
}

// Everything that is put off on a node and below it, and what it was before.
class Switched {
	struct Change {
		NodePath path;
		StringName property;
		Variant off;
	};
	Node *top;
	LocalVector<Change> changes;
	Dictionary before;

	void note(Node *at, const StringName &property, const Variant &now, const Variant &off) {
		if (now.get_type() == Variant::NIL || now == off) {
			return;
		}
		const NodePath path = top->get_path_to(at);
		Dictionary of_node = before.get(path, Dictionary());
		of_node[property] = now;
		before[path] = of_node;
		changes.push_back({ path, property, off });
	}

	StringName seen_as(const Node *at) const {
		for (const StringName &type : names().seen) {
			if (at->is_class(type)) {
				return type;
			}
		}
		return StringName();
	}

	// What is under something hidden is not seen either, unless one of the two is in 2D and the other is not.
	void collect(Node *at, const StringName &hidden_with) {
		const StringName hidden = seen_as(at);
		if (!hidden.is_empty() && hidden != hidden_with) {
			note(at, names().visible, at->get(names().visible), false);
		}
		for (const SwitchNames::Part &part : names().parts) {
			if (at->is_class(part.type)) {
				note(at, part.property, at->get(part.property), part.off);
			}
		}
		if (at != top && at->get_process_mode() != Node::PROCESS_MODE_DISABLED) {
			note(at, names().process_mode, int64_t(at->get_process_mode()), int64_t(Node::PROCESS_MODE_INHERIT));
		}
		for (int i = 0; i < at->get_child_count(); i++) {
			collect(at->get_child(i), hidden);
		}
	}

public:
	explicit Switched(Node *node) : top(node) {}

	void off() {
		collect(top, StringName());
		if (is_one_of(top, names().shapes)) {
			note(top, names().disabled, top->get(names().disabled), true);
		}
		// Last, when nothing below goes by itself any more.
		note(top, names().process_mode, int64_t(top->get_process_mode()), int64_t(Node::PROCESS_MODE_DISABLED));
		const Weak<Node> held(top);
		top->set_meta(names().off, before);
		for (const Change &change : changes) {
			Node *at = held.get() != nullptr ? held.get()->get_node_or_null(change.path) : nullptr;
			if (at != nullptr) {
				at->set(change.property, change.off);
			}
		}
	}

	// Also a node that was made off in the editor.
	void on() {
		const Weak<Node> held(top);
		const Dictionary was = top->get_meta(names().off, Dictionary());
		if (top->has_meta(names().off)) {
			top->remove_meta(names().off);
		}
		const Array paths = was.keys();
		for (int64_t i = 0; i < paths.size(); i++) {
			const Dictionary of_node = was[paths[i]];
			const Array properties = of_node.keys();
			for (int64_t p = 0; p < properties.size(); p++) {
				Node *at = held.get() != nullptr ? held.get()->get_node_or_null(paths[i]) : nullptr;
				if (at != nullptr) {
					at->set(properties[p], of_node[properties[p]]);
				}
			}
		}
		if (held.get() != nullptr && is_off(held.get())) {
			held.get()->set_process_mode(Node::PROCESS_MODE_INHERIT);
		}
		if (held.get() != nullptr && is_one_of(held.get(), names().shapes)) {
			held.get()->set(names().disabled, false);
		}
		if (held.get() != nullptr && held.get()->get(names().visible).get_type() == Variant::BOOL) {
			held.get()->set(names().visible, true);
		}
	}
};

void turn(int64_t node_id, bool on) {
	Node *node = Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(node_id)));
	if (node == nullptr) {
		return;
	}
	if (on) {
		Switched(node).on();
	} else if (!node->has_meta(names().off)) {
		Switched(node).off();
	}
}

class EnableNode : public SCNativeAction {
	using Kind = SCEnableNodeAction;

	static LocalVector<ObjectID> meant(SCMachineBase *machine, SCMachineAction *action) {
		LocalVector<ObjectID> found;
		const StringName group = setting_of<&Kind::group>(action);
		if (group.is_empty()) {
			if (const Node *node = verbs::node_or_warn<&Kind::node_path>(machine, action)) {
				found.push_back(ObjectID(node->get_instance_id()));
			}
			return found;
		}
		if (machine->is_inside_tree()) {
			const TypedArray<Node> all = machine->get_tree()->get_nodes_in_group(group);
			for (int64_t i = 0; i < all.size(); i++) {
				if (const Node *node = Object::cast_to<Node>(all[i])) {
					found.push_back(ObjectID(node->get_instance_id()));
				}
			}
		}
		if (found.is_empty()) {
			verbs::warn(machine, action, vformat("no node is in the group %s, so nothing was switched. Look at how it is written under Group.", group));
		}
		return found;
	}

	static void work(SCMachineBase *machine, SCMachineAction *action) {
		const StillHere here(machine);
		const LocalVector<ObjectID> nodes = meant(machine, action);
		const auto how = checked::choice<&Kind::turn>(machine, action, Kind::TURN_ON);
		// The engine takes nothing out of the physics while it tells of touches.
		const bool later = Engine::get_singleton()->is_in_physics_frame();
		for (const ObjectID id : nodes) {
			const Node *node = Object::cast_to<Node>(ObjectDB::get_instance(id));
			if (node == nullptr) {
				continue;
			}
			if (node->get_parent() == nullptr) {
				if (here) {
					verbs::warn(machine, action, vformat("%s is the game's own window, so it was left as it is. Pick a node below it.", node->get_name()));
				}
				continue;
			}
			const bool on = how == Kind::TURN_ON || (how == Kind::TURN_OTHER_WAY && is_off(node));
			if (later) {
				callable_mp_static(&turn).call_deferred(int64_t(uint64_t(id)), on);
			} else {
				turn(int64_t(uint64_t(id)), on);
			}
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		work(machine, action);
		if (here) {
			machine->finish(index);
		}
	}
};

class SetProcessMode : public SCNativeAction {
	using Kind = SCSetProcessModeAction;

	static void work(SCMachineBase *machine, SCMachineAction *action, int index) {
		const Weak<Node> node(verbs::node_or_warn<&Kind::node_path>(machine, action));
		if (node.get() == nullptr) {
			return;
		}
		const StillHere here(machine);
		const auto mode = int64_t(checked::choice<&Kind::mode>(machine, action, Kind::AS_ITS_PARENT));
		if (setting_of<&Kind::put_back_when_left>(action)) {
			machine->slot(index)[names().ticket] = holders::hold(node.get(), names().process_mode, machine, mode);
		} else {
			holders::change_for_good(node.get(), names().process_mode, mode);
		}
		if (!here || node.get() == nullptr) {
			return;
		}
		if (Engine::get_singleton()->is_in_physics_frame()) {
			node.get()->set_deferred(names().process_mode, mode);
		} else {
			node.get()->set(names().process_mode, mode);
		}
	}

public:
	static constexpr bool HOLDS = true;

	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		work(machine, action, index);
		if (here) {
			machine->finish(index);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override {
		Dictionary slot = machine->slot(index);
		const int64_t ticket = slot.get(names().ticket, 0);
		slot.erase(names().ticket);
		if (ticket == 0) {
			return;
		}
		// What was put on within a physics frame is put on at its end, and goes in that order.
		if (Engine::get_singleton()->is_in_physics_frame()) {
			callable_mp_static(&holders::let_go).call_deferred(ticket);
		} else {
			holders::let_go(ticket);
		}
	}
};

const AddKinds added = {
	add_kind<SCEnableNodeAction, EnableNode>(),
	add_kind<SCSetProcessModeAction, SetProcessMode>(),
};

} // namespace
