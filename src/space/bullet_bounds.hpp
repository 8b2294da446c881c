#pragma once

// The boxes around shapes, by which bullets and what is near them are told apart before the engine is asked.

#include "machine/native_names.hpp"
#include "space/queries.hpp"

#include <type_traits>

using namespace godot;

namespace bullet_sweeps {

// Beyond this the engine's own numbers are too coarse to fly on in.
constexpr double FARTHEST = 1.0e9;

struct BoundsNames {
	StringName radius = "radius";
	StringName height = "height";
	StringName size = "size";
	StringName points = "points";
};

inline const BoundsNames &bounds_names() {
	return NativeNames::of<BoundsNames>();
}

template <class Vector>
struct Bounds {
	Vector least;
	Vector most;

	Bounds() = default;
	Bounds(const Vector &from, const Vector &to) : least(from.min(to)), most(from.max(to)) {}
	void take_in(const Vector &point) {
		least = least.min(point);
		most = most.max(point);
	}
	Bounds grown(const Vector &by) const { return Bounds(least - by, most + by); }
};

inline bool overlap(const Bounds<Vector2> &one, const Bounds<Vector2> &other) {
	return one.least.x <= other.most.x && other.least.x <= one.most.x && one.least.y <= other.most.y && other.least.y <= one.most.y;
}
inline bool overlap(const Bounds<Vector3> &one, const Bounds<Vector3> &other) {
	return one.least.x <= other.most.x && other.least.x <= one.most.x && one.least.y <= other.most.y && other.least.y <= one.most.y &&
			one.least.z <= other.most.z && other.least.z <= one.most.z;
}

inline Vector2 half_of(double radius, double half_height, In2D) {
	return Vector2(real_t(radius), real_t(half_height));
}
inline Vector3 half_of(double radius, double half_height, In3D) {
	return Vector3(real_t(radius), real_t(half_height), real_t(radius));
}

template <class Vector, class Points>
bool bounds_of_points(const Points &points, Bounds<Vector> &bounds) {
	if (points.is_empty()) {
		return false;
	}
	bounds = Bounds<Vector>(points[0], points[0]);
	for (const Vector &point : points) {
		bounds.take_in(point);
	}
	return true;
}

// False for a shape that has no end, is not filled, or is of no kind that is known here.
template <class Side>
bool bounds_of(const Object *shape, Bounds<typename Side::Vector> &bounds) {
	using Vector = typename Side::Vector;
	const Variant size = shape->get(bounds_names().size);
	if (size.get_type() == (Side::IS_2D ? Variant::VECTOR2 : Variant::VECTOR3)) {
		const Vector half = Vector(size) * real_t(0.5);
		bounds = Bounds<Vector>(-half, half);
		return true;
	}
	const Variant radius = shape->get(bounds_names().radius);
	if (radius.get_type() != Variant::FLOAT) {
		using Points = std::conditional_t<Side::IS_2D, PackedVector2Array, PackedVector3Array>;
		return shape->is_class(Side::IS_2D ? "ConvexPolygonShape2D" : "ConvexPolygonShape3D") &&
				bounds_of_points<Vector, Points>(Points(shape->get(bounds_names().points)), bounds);
	}
	const Variant height = shape->get(bounds_names().height);
	const Vector half = half_of(radius, height.get_type() == Variant::FLOAT ? double(height) / 2.0 : double(radius), Side());
	bounds = Bounds<Vector>(-half, half);
	return true;
}

inline Vector2 corner(const Bounds<Vector2> &bounds, int which) {
	return Vector2((which & 1) != 0 ? bounds.most.x : bounds.least.x, (which & 2) != 0 ? bounds.most.y : bounds.least.y);
}
inline Vector3 corner(const Bounds<Vector3> &bounds, int which) {
	return Vector3((which & 1) != 0 ? bounds.most.x : bounds.least.x, (which & 2) != 0 ? bounds.most.y : bounds.least.y,
			(which & 4) != 0 ? bounds.most.z : bounds.least.z);
}

template <class Side>
constexpr int CORNERS = Side::IS_2D ? 4 : 8;

template <class Side>
Bounds<typename Side::Vector> moved(const Bounds<typename Side::Vector> &bounds, const typename Side::Transform &by) {
	const typename Side::Vector first = by.xform(corner(bounds, 0));
	Bounds<typename Side::Vector> all(first, first);
	for (int i = 1; i < CORNERS<Side>; i++) {
		all.take_in(by.xform(corner(bounds, i)));
	}
	return all;
}

// How far from its own middle it reaches, or 0 for what cannot be swept.
template <class Side>
double reach_of(const Object *shape) {
	Bounds<typename Side::Vector> bounds;
	if (!bounds_of<Side>(shape, bounds)) {
		return 0.0;
	}
	const Variant radius = shape->get(bounds_names().radius);
	if (radius.get_type() == Variant::FLOAT && shape->get(bounds_names().height).get_type() != Variant::FLOAT) {
		return radius;
	}
	double farthest = 0.0;
	for (int i = 0; i < CORNERS<Side>; i++) {
		farthest = MAX(farthest, double(corner(bounds, i).length()));
	}
	return farthest;
}

} // namespace bullet_sweeps
