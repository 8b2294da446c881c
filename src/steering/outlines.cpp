#include "steering/outlines.hpp"

#include "machine/native_names.hpp"

#include <godot_cpp/classes/box_shape3d.hpp>
#include <godot_cpp/classes/capsule_shape3d.hpp>
#include <godot_cpp/classes/collision_polygon2d.hpp>
#include <godot_cpp/classes/collision_shape2d.hpp>
#include <godot_cpp/classes/collision_shape3d.hpp>
#include <godot_cpp/classes/concave_polygon_shape3d.hpp>
#include <godot_cpp/classes/convex_polygon_shape3d.hpp>
#include <godot_cpp/classes/cylinder_shape3d.hpp>
#include <godot_cpp/classes/shape2d.hpp>
#include <godot_cpp/classes/sphere_shape3d.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>

namespace outlines {

namespace {

constexpr uint64_t LASTS = 15;
constexpr uint32_t LEAST_KEPT = 256;

struct Measured {
	AABB box;
	uint64_t frame = 0;
};

struct Known {
	mutable HashMap<uint64_t, Measured> by_node;
	mutable uint32_t most = LEAST_KEPT;
};

AABB around(const Vector3 &size) {
	return AABB(size * -0.5f, size);
}

AABB around(const PackedVector3Array &points) {
	if (points.is_empty()) {
		return AABB();
	}
	AABB box(points[0], Vector3());
	for (const Vector3 &point : points) {
		box.expand_to(point);
	}
	return box;
}

AABB in_3d(const Rect2 &around) {
	return AABB(Vector3(around.position.x, around.position.y, 0.0f), Vector3(around.size.x, around.size.y, 0.0f));
}

AABB of_shape(const Shape3D *shape) {
	if (const auto *box = Object::cast_to<BoxShape3D>(shape)) {
		return around(box->get_size());
	}
	if (const auto *sphere = Object::cast_to<SphereShape3D>(shape)) {
		return around(Vector3(1, 1, 1) * real_t(sphere->get_radius() * 2.0));
	}
	if (const auto *capsule = Object::cast_to<CapsuleShape3D>(shape)) {
		const real_t wide = real_t(capsule->get_radius() * 2.0);
		return around(Vector3(wide, real_t(capsule->get_height()), wide));
	}
	if (const auto *cylinder = Object::cast_to<CylinderShape3D>(shape)) {
		const real_t wide = real_t(cylinder->get_radius() * 2.0);
		return around(Vector3(wide, real_t(cylinder->get_height()), wide));
	}
	if (const auto *convex = Object::cast_to<ConvexPolygonShape3D>(shape)) {
		return around(convex->get_points());
	}
	const auto *concave = Object::cast_to<ConcavePolygonShape3D>(shape);
	return concave != nullptr ? around(concave->get_faces()) : AABB();
}

AABB of_part(const Node *child) {
	if (const auto *part = Object::cast_to<CollisionShape3D>(child)) {
		const Ref<Shape3D> shape = part->get_shape();
		return shape.is_valid() && !part->is_disabled() ? part->get_transform().xform(of_shape(shape.ptr())) : AABB();
	}
	if (const auto *part = Object::cast_to<CollisionShape2D>(child)) {
		const Ref<Shape2D> shape = part->get_shape();
		return shape.is_valid() && !part->is_disabled() ? in_3d(part->get_transform().xform(shape->get_rect())) : AABB();
	}
	const auto *polygon = Object::cast_to<CollisionPolygon2D>(child);
	const PackedVector2Array corners = polygon != nullptr && !polygon->is_disabled() ? polygon->get_polygon() : PackedVector2Array();
	if (corners.is_empty()) {
		return AABB();
	}
	Rect2 box(corners[0], Vector2());
	for (const Vector2 &corner : corners) {
		box.expand_to(corner);
	}
	return in_3d(polygon->get_transform().xform(box));
}

AABB measured(const Node *node) {
	AABB box;
	bool is_first = true;
	for (int i = 0; i < node->get_child_count(); i++) {
		const AABB part = of_part(node->get_child(i));
		if (part.size != Vector3()) {
			box = is_first ? part : box.merge(part);
			is_first = false;
		}
	}
	return box;
}

// However many are looked at at once, each is measured no more often than it has to be.
void drop_the_old(const Known &known, uint64_t frame) {
	LocalVector<uint64_t> old;
	for (const KeyValue<uint64_t, Measured> &entry : known.by_node) {
		if (frame - entry.value.frame >= LASTS) {
			old.push_back(entry.key);
		}
	}
	for (const uint64_t id : old) {
		known.by_node.erase(id);
	}
	known.most = MAX(LEAST_KEPT, uint32_t(known.by_node.size()) * 2);
}

} // namespace

AABB of(const Node *node, uint64_t frame) {
	const Known &known = NativeNames::of<Known>();
	const uint64_t id = node->get_instance_id();
	if (const Measured *last = known.by_node.getptr(id)) {
		if (frame - last->frame < LASTS) {
			return last->box;
		}
	} else if (uint32_t(known.by_node.size()) >= known.most) {
		drop_the_old(known, frame);
	}
	Measured now;
	now.box = measured(node);
	now.frame = frame;
	known.by_node[id] = now;
	return now.box;
}

} // namespace outlines
