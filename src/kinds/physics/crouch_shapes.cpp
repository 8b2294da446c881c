#include "kinds/physics/crouch_shapes.hpp"

#include <godot_cpp/classes/box_shape3d.hpp>
#include <godot_cpp/classes/capsule_shape2d.hpp>
#include <godot_cpp/classes/capsule_shape3d.hpp>
#include <godot_cpp/classes/cylinder_shape3d.hpp>
#include <godot_cpp/classes/rectangle_shape2d.hpp>

namespace crouch_shapes {

namespace {

template <class Shape, class Act>
bool visit_one(const Ref<Resource> &shape, Act act) {
	Shape *found = Object::cast_to<Shape>(shape.ptr());
	if (found != nullptr) {
		act(found);
	}
	return found != nullptr;
}

// Calls one of the two, by where the shape keeps its height.
template <class OfHeight, class OfSize>
bool visit(const Ref<Resource> &shape, OfHeight of_height, OfSize of_size) {
	return visit_one<CapsuleShape2D>(shape, of_height) || visit_one<CapsuleShape3D>(shape, of_height) || visit_one<CylinderShape3D>(shape, of_height) ||
			visit_one<RectangleShape2D>(shape, of_size) || visit_one<BoxShape3D>(shape, of_size);
}

// Which way its own height runs, within its parent and in the world.
Vector2 upright(const Transform2D &space) {
	return space.columns[1];
}
Vector3 upright(const Transform3D &space) {
	return space.basis.get_column(1);
}

template <class ShapeNode, class Vector>
Variant lower(const ShapeNode *shape_node, double lost, const Vector &down) {
	const real_t side = upright(shape_node->get_global_transform()).dot(down) < 0.0f ? -1.0f : 1.0f;
	return upright(shape_node->get_transform()) * side * real_t(lost / 2.0);
}

} // namespace

double height_of(const Ref<Resource> &shape) {
	double height = -1.0;
	visit(
			shape, [&](const auto *tall) { height = double(tall->get_height()); }, [&](const auto *box) { height = double(box->get_size().y); });
	return height;
}

void set_height_of(const Ref<Resource> &shape, double height) {
	visit(
			shape, [&](auto *tall) { tall->set_height(float(height)); },
			[&](auto *box) {
				auto size = box->get_size();
				size.y = real_t(height);
				box->set_size(size);
			});
}

bool is_shape_node(const Node *node) {
	return Object::cast_to<CollisionShape2D>(node) != nullptr || Object::cast_to<CollisionShape3D>(node) != nullptr;
}

Ref<Resource> held_by(const Node *shape_node) {
	if (const auto *in_2d = Object::cast_to<CollisionShape2D>(shape_node)) {
		return in_2d->get_shape();
	}
	const auto *in_3d = Object::cast_to<CollisionShape3D>(shape_node);
	return in_3d != nullptr ? Ref<Resource>(in_3d->get_shape()) : Ref<Resource>();
}

Node *below(const Node *body) {
	const int count = body != nullptr ? body->get_child_count() : 0;
	for (int i = 0; i < count; i++) {
		Node *child = body->get_child(i);
		if (held_by(child).is_valid()) {
			return child;
		}
	}
	return nullptr;
}

Variant lowered(const Node *shape_node, double lost, const Variant &down) {
	if (const auto *in_2d = Object::cast_to<CollisionShape2D>(shape_node)) {
		return lower(in_2d, lost, Vector2(down));
	}
	const auto *in_3d = Object::cast_to<CollisionShape3D>(shape_node);
	return in_3d != nullptr ? lower(in_3d, lost, Vector3(down)) : Variant();
}

} // namespace crouch_shapes
