// The compiled runtime of Drop Item.

#include "action/add_kind.hpp"
#include "action/places.hpp"
#include "action/runtime_shapes.hpp"
#include "action/spaces.hpp"
#include "action/weak.hpp"
#include "inventory/bags.hpp"
#include "inventory/items.hpp"
#include "kinds/items/dropping.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/window.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

using Kind = SCDropItemAction;

void land(int64_t parent_id, int64_t pickup_id, const Variant &place) {
	Node *parent = Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(parent_id)));
	const Weak<Node> pickup(Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(pickup_id))));
	if (pickup.get() == nullptr || pickup.get()->get_parent() != nullptr) {
		return;
	}
	if (parent == nullptr) {
		pickup.get()->queue_free();
		return;
	}
	parent->add_child(pickup.get(), true);
	if (place.get_type() != Variant::NIL && pickup.get() != nullptr && pickup.get()->is_inside_tree()) {
		places::set_position_of(pickup.get(), place);
	}
}

// One pass: finds what it takes, and puts it down when all of it is there.
class Drop {
	SCMachineBase *machine;
	SCMachineAction *action;
	int index;
	StillHere here;
	Ref<Resource> item;
	Weak<Node> bag;

	void wrong(Kind::Wrong what, const String &about) { verbs::say<&Kind::warn>(action, machine, index, what, about); }
	void cannot() {
		if (here) {
			verbs::send<&Kind::cannot_event>(machine, action);
		}
	}

	// What is at hand of what was asked for; 0 when it is not there.
	int64_t at_hand() {
		int64_t asked = bags::how_many(machine, setting_of<&Kind::how_many>(action), setting_of<&Kind::how_many_variable>(action));
		if (asked < 1) {
			asked = bags::count(bag.get(), item);
		}
		return asked >= 1 && bag.get() != nullptr && bags::has(bag.get(), item, asked) ? asked : 0;
	}

	// Null, of which the game maker is told, when nothing can go into it.
	Node *make_pickup() {
		const Ref<PackedScene> scene = setting_of<&Kind::pickup_scene>(action);
		Node *pickup = scene->can_instantiate() ? scene->instantiate() : nullptr;
		if (pickup == nullptr && here) {
			verbs::warn(machine, action, "nothing can be made of Pickup Scene, so nothing is put down. Pick a scene with an Inventory on it.");
		}
		if (pickup != nullptr && bags::on(pickup, bags::EITHER) == nullptr) {
			if (here) {
				wrong(Kind::NO_BAG_IN_IT, pickup->get_name());
			}
			pickup->queue_free();
			return nullptr;
		}
		return pickup;
	}

	Variant place_for(const Node *pickup) {
		const NodePath path = setting_of<&Kind::at_path>(action);
		const Node *at = values::node_of(machine, path);
		if (at == nullptr) {
			wrong(Kind::NO_PLACE, items::shown_name(item));
			return Variant();
		}
		const Variant offset = setting_of<&Kind::offset>(action);
		const Variant place = places::position_of(at);
		const bool is_moved = offset.get_type() != Variant::NIL && spaces::place_or_warn(machine, action, offset, verbs::name_of<&Kind::offset>());
		if (place.get_type() == Variant::NIL || !is_moved) {
			return place;
		}
		if (Object::cast_to<Node3D>(pickup) != nullptr) {
			return places::as_vector3(place) + places::as_vector3(offset);
		}
		return places::as_vector2(place) + places::as_vector2(offset);
	}

	// The engine takes no new children while a scene is being set up, nor new areas in the middle of a physics frame.
	static void put_into_scene(Node *parent, Node *pickup, const Variant &place) {
		const int64_t parent_id = int64_t(parent->get_instance_id());
		const int64_t pickup_id = int64_t(pickup->get_instance_id());
		if (!parent->is_node_ready() || Engine::get_singleton()->is_in_physics_frame()) {
			callable_mp_static(&land).call_deferred(parent_id, pickup_id, place);
		} else {
			land(parent_id, pickup_id, place);
		}
	}

	// The pickup that lies there with something in it now; null, and nothing is missing, for none.
	Node *put_down(Node *made, int64_t how_many) {
		const Weak<Node> pickup(made);
		SceneTree *tree = machine->is_inside_tree() ? machine->get_tree() : nullptr;
		const Variant place = place_for(made);
		int64_t moved = 0;
		if (tree != nullptr && pickup.get() != nullptr) {
			Node *scene = tree->get_current_scene();
			put_into_scene(scene != nullptr ? scene : tree->get_root(), pickup.get(), place);
			Node *its_bag = bags::on(pickup.get(), bags::EITHER);
			if (its_bag != nullptr && bag.get() != nullptr) {
				moved = bags::move_to(bag.get(), its_bag, item, how_many);
			}
		}
		if (moved < 1 && pickup.get() != nullptr) {
			pickup.get()->queue_free();
			return nullptr;
		}
		return pickup.get();
	}

public:
	Drop(SCMachineBase *of_machine, SCMachineAction *of_action, int of_index) :
			machine(of_machine), action(of_action), index(of_index), here(of_machine),
			bag(bags::at(of_machine, setting_of<&Kind::bag_path>(of_action), bags::EITHER)) {}

	void take() {
		const items::Meant meant = items::meant<&Kind::item, &Kind::item_variable>(machine, action);
		item = meant.item;
		if (!meant) {
			wrong(Kind::NO_ITEM, meant.missing);
			return;
		}
		if (bag.get() == nullptr) {
			wrong(Kind::NO_BAG, String());
			return;
		}
		if (setting_of<&Kind::pickup_scene>(action).is_null()) {
			wrong(Kind::NO_SCENE, items::shown_name(item));
			cannot();
			return;
		}
		const int64_t how_many = at_hand();
		Node *made = how_many > 0 && here ? make_pickup() : nullptr;
		if (!here) {
			if (made != nullptr) {
				made->queue_free();
			}
			return;
		}
		const Weak<Node> pickup(made != nullptr ? put_down(made, how_many) : nullptr);
		if (pickup.get() == nullptr) {
			cannot();
			return;
		}
		if (here) {
			verbs::keep_if_named<&Kind::store_pickup_in>(machine, action, pickup.get());
		}
		if (here) {
			verbs::send<&Kind::dropped_event>(machine, action, pickup.get());
		}
	}
};

class DropItem : public OnceOrRepeating<DropItem> {
public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) { Drop(machine, action, index).take(); }
};

const AddKinds added = {
	add_kind<SCDropItemAction, DropItem>(),
};

} // namespace
