// The compiled runtime of Set Collision.

#include "action/add_kind.hpp"
#include "action/holders.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "kinds/physics/set_collision.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/collision_object2d.hpp>
#include <godot_cpp/classes/collision_object3d.hpp>
#include <godot_cpp/classes/collision_polygon2d.hpp>
#include <godot_cpp/classes/collision_polygon3d.hpp>
#include <godot_cpp/classes/collision_shape2d.hpp>
#include <godot_cpp/classes/collision_shape3d.hpp>
#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/project_settings.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>
#include <godot_cpp/variant/packed_int64_array.hpp>

namespace {

using Kind = SCSetCollisionAction;

struct Names {
	StringName tickets = "tickets";
	StringName disabled = "disabled";
	StringName collision_enabled = "collision_enabled";
	StringName use_collision = "use_collision";
	StringName collision_layer = "collision_layer";
	StringName collision_mask = "collision_mask";
};

const Names &names() {
	return NativeNames::of<Names>();
}

bool is_shape(const Node *node) {
	return Object::cast_to<CollisionShape2D>(node) != nullptr || Object::cast_to<CollisionShape3D>(node) != nullptr ||
			Object::cast_to<CollisionPolygon2D>(node) != nullptr || Object::cast_to<CollisionPolygon3D>(node) != nullptr;
}

bool is_collider(const Node *node) {
	return Object::cast_to<CollisionObject2D>(node) != nullptr || Object::cast_to<CollisionObject3D>(node) != nullptr;
}

// The engine takes no shape off while it tells of touches, which it does within the physics frame.
bool has_to_wait(const StringName &property) {
	return property != names().collision_layer && property != names().collision_mask && Engine::get_singleton()->is_in_physics_frame();
}

String layer_setting(bool in_2d, int layer) {
	return vformat("layer_names/%s_physics/layer_%d", in_2d ? "2d" : "3d", layer);
}

// From 1 to 32, 0 for none of that name.
int layer_called(bool in_2d, const String &name) {
	if (name.is_valid_int()) {
		const int64_t number = name.to_int();
		return number >= 1 && number <= 32 ? int(number) : 0;
	}
	const ProjectSettings *project = ProjectSettings::get_singleton();
	for (int layer = 1; layer <= 32; layer++) {
		if (String(project->get_setting(layer_setting(in_2d, layer), String())).nocasecmp_to(name) == 0) {
			return layer;
		}
	}
	return 0;
}

struct Changes {
	SCMachineBase *machine;
	SCMachineAction *action;
	bool holds;
	PackedInt64Array tickets;
	StillHere here;

	Changes(SCMachineBase *of_machine, SCMachineAction *of_action) :
			machine(of_machine), action(of_action), holds(setting_of<&Kind::put_back_when_left>(of_action)), here(of_machine) {}

	void put(Node *node, const StringName &property, const Variant &value) {
		if (!here) {
			return;
		}
		const Weak<Node> weak(node);
		if (holds) {
			tickets.push_back(holders::hold(node, property, machine, value));
		} else {
			holders::change_for_good(node, property, value);
		}
		node = weak.get();
		if (node == nullptr) {
			return;
		}
		if (has_to_wait(property)) {
			node->set_deferred(property, value);
		} else {
			node->set(property, value);
		}
	}

	void switch_to(Node *node, bool on) {
		if (is_shape(node)) {
			put(node, names().disabled, !on);
			return;
		}
		for (const StringName *property : { &names().collision_enabled, &names().use_collision }) {
			if (node->get(*property).get_type() == Variant::BOOL) {
				put(node, *property, on);
				return;
			}
		}
		LocalVector<ObjectID> shapes;
		for (int i = 0; is_collider(node) && i < node->get_child_count(); i++) {
			if (is_shape(node->get_child(i))) {
				shapes.push_back(ObjectID(node->get_child(i)->get_instance_id()));
			}
		}
		if (shapes.is_empty()) {
			verbs::warn(machine, action,
					vformat("%s has no collision to switch, so it was left as it is. Pick a body or an area with a collision shape right below it, a collision "
							"shape, or a tile map layer under Node Path.",
							node->get_name()));
		}
		for (const ObjectID &shape : shapes) {
			if (Node *found = Object::cast_to<Node>(ObjectDB::get_instance(shape))) {
				put(found, names().disabled, !on);
			}
		}
	}

	int64_t bits_of(const String &named, bool in_2d, const StringName &setting) const {
		int64_t bits = 0;
		const PackedStringArray each = named.split(",", false);
		for (const String &part : each) {
			const String name = part.strip_edges();
			const int layer = name.is_empty() ? 0 : layer_called(in_2d, name);
			if (layer > 0) {
				bits |= int64_t(1) << (layer - 1);
			} else if (!name.is_empty()) {
				verbs::warn(machine, action,
						vformat("there is no %s physics layer called %s, so it was left out. Name one in Project Settings, under Layer Names, or type another "
								"under %s.",
								in_2d ? "2D" : "3D", name, verbs::setting_in_inspector(setting)));
			}
		}
		return bits;
	}

	void change(Node *node, const StringName &property, Kind::Change how, int64_t bits) {
		const Variant held = node->get(property);
		if (held.get_type() != Variant::INT) {
			verbs::warn(machine, action,
					vformat("%s is a %s, which is on no physics layers, so it was left as it is. Pick a body or an area under Node Path.", node->get_name(),
							node->get_class()));
			return;
		}
		int64_t now = held;
		switch (how) {
			case Kind::SET:
				now = bits;
				break;
			case Kind::ADD:
				now |= bits;
				break;
			case Kind::REMOVE:
				now &= ~bits;
				break;
			case Kind::LEAVE_THEM:
				return;
		}
		put(node, property, now & 0xFFFFFFFF);
	}
};

class SetCollision : public SCNativeAction {
	static void work(SCMachineBase *machine, SCMachineAction *action, int index) {
		const Weak<Node> node(verbs::node_or_warn<&Kind::node_path>(machine, action));
		const Kind *kind = as_kind<Kind>(action);
		if (node.get() == nullptr || kind == nullptr) {
			return;
		}
		Changes changes(machine, action);
		const bool in_2d = places::is_2d(node.get());
		const Kind::Collision collision = kind->collision;
		const Kind::Change layers = kind->change_layers;
		const Kind::Change mask = kind->change_mask;
		const int64_t on_layers =
				layers == Kind::LEAVE_THEM ? 0 : kind->collision_layer | changes.bits_of(kind->layer_names, in_2d, verbs::name_of<&Kind::layer_names>());
		const int64_t in_mask =
				mask == Kind::LEAVE_THEM ? 0 : kind->collision_mask | changes.bits_of(kind->mask_names, in_2d, verbs::name_of<&Kind::mask_names>());
		if (collision == Kind::ON || collision == Kind::OFF) {
			changes.switch_to(node.get(), collision == Kind::ON);
		}
		if (changes.here && node.get() != nullptr && layers != Kind::LEAVE_THEM) {
			changes.change(node.get(), names().collision_layer, layers, on_layers);
		}
		if (changes.here && node.get() != nullptr && mask != Kind::LEAVE_THEM) {
			changes.change(node.get(), names().collision_mask, mask, in_mask);
		}
		if (changes.here) {
			machine->slot(index)[names().tickets] = changes.tickets;
		} else {
			let_go(changes.tickets);
		}
	}

	// What was put on within a physics frame is put on at its end, and goes in that order.
	static void let_go(const PackedInt64Array &tickets) {
		const bool later = Engine::get_singleton()->is_in_physics_frame();
		for (int64_t i = 0; i < tickets.size(); i++) {
			if (later) {
				callable_mp_static(&holders::let_go).call_deferred(tickets[i]);
			} else {
				holders::let_go(tickets[i]);
			}
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
		const PackedInt64Array tickets = slot.get(names().tickets, PackedInt64Array());
		slot.erase(names().tickets);
		let_go(tickets);
	}
};

const AddKinds added = {
	add_kind<SCSetCollisionAction, SetCollision>(),
};

} // namespace
