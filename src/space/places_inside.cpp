#include "space/places_inside.hpp"

#include "action/checked.hpp"
#include "action/places.hpp"
#include "action/spaces.hpp"

#include <godot_cpp/classes/box_shape3d.hpp>
#include <godot_cpp/classes/capsule_shape2d.hpp>
#include <godot_cpp/classes/capsule_shape3d.hpp>
#include <godot_cpp/classes/circle_shape2d.hpp>
#include <godot_cpp/classes/collision_shape2d.hpp>
#include <godot_cpp/classes/collision_shape3d.hpp>
#include <godot_cpp/classes/cylinder_shape3d.hpp>
#include <godot_cpp/classes/rectangle_shape2d.hpp>
#include <godot_cpp/classes/sphere_shape3d.hpp>
#include <godot_cpp/core/math.hpp>

namespace places_inside {

namespace {

// How finely the rim of a round area is looked at.
constexpr int RIM = 64;

template <class T>
const T *first_below(const Node *node) {
	if (const T *found = Object::cast_to<T>(node)) {
		return found;
	}
	for (int i = 0; i < node->get_child_count(); i++) {
		if (const T *found = first_below<T>(node->get_child(i))) {
			return found;
		}
	}
	return nullptr;
}

template <class T>
bool take_round(const Resource *shape, Area &area) {
	const T *of_kind = Object::cast_to<T>(shape);
	if (of_kind != nullptr) {
		area.is_round = true;
		area.half_x = of_kind->get_radius();
		area.half_y = area.half_x;
	}
	return of_kind != nullptr;
}

bool take_box(const Resource *shape, Area &area) {
	if (const RectangleShape2D *rectangle = Object::cast_to<RectangleShape2D>(shape)) {
		area.half_x = rectangle->get_size().x / 2.0;
		area.half_y = rectangle->get_size().y / 2.0;
		return true;
	}
	if (const BoxShape3D *box = Object::cast_to<BoxShape3D>(shape)) {
		area.half_x = box->get_size().x / 2.0;
		area.half_y = box->get_size().z / 2.0;
		return true;
	}
	return false;
}

bool take(const Resource *shape, Area &area) {
	const bool known = take_box(shape, area) || take_round<CircleShape2D>(shape, area) || take_round<SphereShape3D>(shape, area) ||
			take_round<CapsuleShape2D>(shape, area) || take_round<CapsuleShape3D>(shape, area) || take_round<CylinderShape3D>(shape, area);
	return known && checked::is_sound(area.half_x) && checked::is_sound(area.half_y);
}

} // namespace

Variant Area::place_of(const Vector2 &point) const {
	if (in_2d) {
		return world_2d.xform(point);
	}
	return world_3d.origin + world_3d.basis.get_column(0) * point.x + world_3d.basis.get_column(2) * point.y;
}

bool Area::holds(const Vector2 &point) const {
	const double x = half_x > 0.0 ? point.x / half_x : (point.x == 0.0f ? 0.0 : 2.0);
	const double y = half_y > 0.0 ? point.y / half_y : (point.y == 0.0f ? 0.0 : 2.0);
	return is_round ? x * x + y * y <= 1.0 : Math::abs(x) <= 1.0 && Math::abs(y) <= 1.0;
}

Vector2 Area::farthest_from(const Variant &place) const {
	const int count = is_round ? RIM : 4;
	Vector2 farthest;
	double most = -1.0;
	for (int i = 0; i < count; i++) {
		const double angle = Math::TAU * i / count;
		const Vector2 point = is_round ? Vector2(real_t(Math::cos(angle) * half_x), real_t(Math::sin(angle) * half_y))
									   : Vector2(real_t(i % 2 == 0 ? half_x : -half_x), real_t(i < 2 ? half_y : -half_y));
		const double distance = places::distance_between(place_of(point), place);
		if (distance > most) {
			most = distance;
			farthest = point;
		}
	}
	return farthest;
}

Area at(const Node *node) {
	Area area;
	if (node == nullptr) {
		return area;
	}
	Ref<Resource> shape;
	const Node *found = nullptr;
	const bool is_shape_2d = Object::cast_to<CollisionShape2D>(node) != nullptr;
	if (const CollisionShape3D *in_3d = is_shape_2d ? nullptr : first_below<CollisionShape3D>(node)) {
		found = in_3d;
		shape = in_3d->get_shape();
		area.world_3d = spaces::world_of(in_3d);
	} else if (const CollisionShape2D *in_2d = first_below<CollisionShape2D>(node)) {
		found = in_2d;
		shape = in_2d->get_shape();
		area.in_2d = true;
		area.world_2d = spaces::world_of(in_2d);
	}
	if (shape.is_valid() && take(shape.ptr(), area)) {
		area.shape = found;
	}
	return area;
}

Vector2 draw(const Area &area, RandomNumberGenerator *random) {
	if (!area.is_round) {
		const double x = random->randf_range(real_t(-area.half_x), real_t(area.half_x));
		const double y = random->randf_range(real_t(-area.half_y), real_t(area.half_y));
		return Vector2(real_t(x), real_t(y));
	}
	const double angle = random->randf() * Math::TAU;
	const double radius = Math::sqrt(double(random->randf()));
	return Vector2(real_t(Math::cos(angle) * radius * area.half_x), real_t(Math::sin(angle) * radius * area.half_y));
}

} // namespace places_inside
