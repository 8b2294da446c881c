#include "action/spaces.hpp"

#include "action/checked.hpp"

#include <godot_cpp/classes/container.hpp>
#include <godot_cpp/classes/rigid_body2d.hpp>
#include <godot_cpp/classes/rigid_body3d.hpp>

#include <cmath>

namespace spaces {

Node *placed(SCMachineBase *machine, const NodePath &path) {
	Node *node = values::node_of(machine, path);
	return places::has_a_place(node) ? node : nullptr;
}

Node *placed_or_warn(SCMachineBase *machine, const Object *kind, const NodePath &path, const StringName &setting) {
	Node *node = verbs::node_or_warn(machine, kind, path, setting);
	if (node == nullptr || places::has_a_place(node)) {
		return node;
	}
	verbs::warn_wrong_class(machine, kind, node, "a Node2D, a Node3D or a Control", setting);
	return nullptr;
}

void warn_if_placed_by_another(SCMachineBase *machine, const Object *kind, const Node *node) {
	const Node *above = node->get_parent();
	if (Object::cast_to<Control>(node) != nullptr && Object::cast_to<Container>(above) != nullptr) {
		verbs::warn(machine, kind,
				vformat("%s lies in %s, a %s, which places what it holds, so it will not stay there. Move something inside %s instead, or take it out of the "
						"container.",
						node->get_name(), above->get_name(), above->get_class(), node->get_name()));
		return;
	}
	const RigidBody2D *body_2d = Object::cast_to<RigidBody2D>(node);
	const RigidBody3D *body_3d = Object::cast_to<RigidBody3D>(node);
	if ((body_2d != nullptr && !body_2d->is_freeze_enabled()) || (body_3d != nullptr && !body_3d->is_freeze_enabled())) {
		verbs::warn(machine, kind,
				vformat("%s is a %s, which the physics moves too, so the two fight over where it is. Tick Freeze on it, or push it with Apply Force.",
						node->get_name(), node->get_class()));
	}
}

bool has_size_or_warn(SCMachineBase *machine, const Object *kind, const Node *placed, bool turning) {
	const CanvasItem *item = Object::cast_to<CanvasItem>(placed);
	const Node3D *node_3d = Object::cast_to<Node3D>(placed);
	const Node *small = nullptr;
	if (item != nullptr ? !has_a_way_back(parent_of(item)) : node_3d != nullptr && !has_a_way_back(parent_of(node_3d).basis)) {
		small = placed->get_parent();
	} else if (turning && node_3d != nullptr && !has_a_way_back(node_3d->get_basis())) {
		small = placed;
	}
	if (small == nullptr) {
		return true;
	}
	verbs::warn(machine, kind,
			vformat("%s has a size of 0, so %s stays as it is. Give it a Scale above 0.", small->get_name(),
					small == placed ? String("it") : String(placed->get_name())));
	return false;
}

bool place_or_warn(SCMachineBase *machine, const Object *kind, const Variant &value, const StringName &setting) {
	switch (value.get_type()) {
		case Variant::VECTOR2:
		case Variant::VECTOR2I:
		case Variant::VECTOR3:
		case Variant::VECTOR3I:
			return checked::sound_or_warn(machine, kind, value, setting);
		case Variant::OBJECT: {
			const Node *node = Object::cast_to<Node>(value.get_validated_object());
			if (places::has_a_place(node)) {
				return checked::sound_or_warn(machine, kind, places::position_of(node), setting);
			}
			if (node != nullptr) {
				verbs::warn(machine, kind, vformat("%s.", places::no_place_words(node, verbs::setting_in_inspector(setting))));
				return false;
			}
			break;
		}
		default:
			break;
	}
	const String shown = verbs::setting_in_inspector(setting);
	verbs::warn(machine, kind,
			vformat("%s holds %s, which is no place and no direction, so it did nothing. Pick a Vector2, a Vector3 or a node beside %s.", shown,
					values::kind_in_words(value), shown));
	return false;
}

Variant on_side_of(const Node *placed, const Variant &place) {
	return places::is_2d(placed) ? Variant(places::as_vector2(place)) : Variant(places::as_vector3(place));
}

// The inverse of something smaller than a normal number is endless.
bool has_a_way_back(const Transform2D &space) {
	return std::isnormal(space.determinant());
}

bool has_a_way_back(const Basis &space) {
	return std::isnormal(space.determinant());
}

Transform2D world_of(const CanvasItem *item) {
	return item->get_global_transform();
}

// Outside the tree there is no world, and asking for it is an engine error.
Transform3D world_of(const Node3D *node_3d) {
	return node_3d->is_inside_tree() ? node_3d->get_global_transform() : node_3d->get_transform();
}

Transform2D parent_of(const CanvasItem *item) {
	const CanvasItem *above = item->is_set_as_top_level() ? nullptr : Object::cast_to<CanvasItem>(item->get_parent());
	return above != nullptr ? world_of(above) : Transform2D();
}

Transform3D parent_of(const Node3D *node_3d) {
	const Node3D *above = node_3d->is_set_as_top_level() ? nullptr : Object::cast_to<Node3D>(node_3d->get_parent());
	return above != nullptr ? world_of(above) : Transform3D();
}

double rotation_of(const CanvasItem *item) {
	const Control *control = Object::cast_to<Control>(item);
	const Node2D *node_2d = Object::cast_to<Node2D>(item);
	return control != nullptr ? double(control->get_rotation()) : (node_2d != nullptr ? double(node_2d->get_rotation()) : 0.0);
}

void set_rotation_of(CanvasItem *item, double rotation) {
	if (Control *control = Object::cast_to<Control>(item)) {
		control->set_rotation(real_t(rotation));
	} else if (Node2D *node_2d = Object::cast_to<Node2D>(item)) {
		node_2d->set_rotation(real_t(rotation));
	}
}

Variant to_world(const Node *placed, const Variant &place) {
	if (const CanvasItem *item = Object::cast_to<CanvasItem>(placed)) {
		return world_of(item).xform(places::as_vector2(place));
	}
	const Node3D *node_3d = Object::cast_to<Node3D>(placed);
	return node_3d != nullptr ? Variant(world_of(node_3d).xform(places::as_vector3(place))) : Variant();
}

Variant to_own(const Node *placed, const Variant &place) {
	if (const CanvasItem *item = Object::cast_to<CanvasItem>(placed)) {
		const Transform2D world = world_of(item);
		return has_a_way_back(world) ? Variant(world.affine_inverse().xform(places::as_vector2(place))) : Variant();
	}
	if (const Node3D *node_3d = Object::cast_to<Node3D>(placed)) {
		const Transform3D world = world_of(node_3d);
		return has_a_way_back(world.basis) ? Variant(world.affine_inverse().xform(places::as_vector3(place))) : Variant();
	}
	return Variant();
}

Variant own_direction(const Node *placed, const Variant &direction) {
	if (const CanvasItem *item = Object::cast_to<CanvasItem>(placed)) {
		return places::as_vector2(direction).rotated(world_of(item).get_rotation());
	}
	if (const Node3D *node_3d = Object::cast_to<Node3D>(placed)) {
		const Basis basis = world_of(node_3d).basis;
		return has_a_way_back(basis) ? basis.get_rotation_quaternion().xform(places::as_vector3(direction)) : places::as_vector3(direction);
	}
	return direction;
}

} // namespace spaces
