#include <godot_cpp/variant/aabb.hpp>

#include "math_checks.hpp"

namespace godot {

namespace {

void check_size([[maybe_unused]] const AABB &box) {
#ifdef MATH_CHECKS
	if (unlikely(box.size.x < 0 || box.size.y < 0 || box.size.z < 0)) {
		ERR_PRINT("AABB size is negative, this is not supported. Use AABB.abs() to get an AABB with a positive size.");
	}
#endif
}

void check_sizes(const AABB &a, const AABB &b) {
	check_size(a);
	check_size(b);
}

Vector3 axis_vector(int index) {
	Vector3 axis;
	axis[index] = 1;
	return axis;
}

} // namespace

bool AABB::has_point(const Vector3 &point) const {
	check_size(*this);
	const Vector3 end = get_end();
	for (int i = 0; i < 3; i++) {
		if (point[i] < position[i] || point[i] > end[i]) {
			return false;
		}
	}
	return true;
}

bool AABB::intersects(const AABB &with) const {
	check_sizes(*this, with);
	const Vector3 end = get_end();
	const Vector3 other_end = with.get_end();
	for (int i = 0; i < 3; i++) {
		if (position[i] >= other_end[i] || end[i] <= with.position[i]) {
			return false;
		}
	}
	return true;
}

bool AABB::intersects_inclusive(const AABB &with) const {
	check_sizes(*this, with);
	const Vector3 end = get_end();
	const Vector3 other_end = with.get_end();
	for (int i = 0; i < 3; i++) {
		if (position[i] > other_end[i] || end[i] < with.position[i]) {
			return false;
		}
	}
	return true;
}

bool AABB::encloses(const AABB &with) const {
	check_sizes(*this, with);
	const Vector3 end = get_end();
	const Vector3 other_end = with.get_end();
	for (int i = 0; i < 3; i++) {
		if (position[i] > with.position[i] || end[i] < other_end[i]) {
			return false;
		}
	}
	return true;
}

bool AABB::intersects_plane(const Plane &plane) const {
	bool over = false;
	bool under = false;
	for (int i = 0; i < 8; i++) {
		(plane.distance_to(get_endpoint(i)) > 0 ? over : under) = true;
	}
	return over && under;
}

bool AABB::intersects_segment(const Vector3 &from, const Vector3 &to, Vector3 *intersection_out, Vector3 *normal_out) const {
	check_size(*this);
	real_t entry = 0;
	real_t exit = 1;
	int entry_axis = 0;
	real_t entry_sign = 0;
	for (int i = 0; i < 3; i++) {
		const real_t start = from[i];
		const real_t stop = to[i];
		const real_t low = position[i];
		const real_t high = low + size[i];
		const real_t way = stop - start;
		real_t in;
		real_t out;
		real_t sign;
		if (start < stop) {
			if (start > high || stop < low) {
				return false;
			}
			in = start < low ? (low - start) / way : 0;
			out = stop > high ? (high - start) / way : 1;
			sign = -1;
		} else {
			if (stop > high || start < low) {
				return false;
			}
			in = start > high ? (high - start) / way : 0;
			out = stop < low ? (low - start) / way : 1;
			sign = 1;
		}
		if (in > entry) {
			entry = in;
			entry_axis = i;
			entry_sign = sign;
		}
		exit = MIN(exit, out);
		if (exit < entry) {
			return false;
		}
	}
	if (normal_out) {
		*normal_out = Vector3();
		(*normal_out)[entry_axis] = entry_sign;
	}
	if (intersection_out) {
		*intersection_out = from + (to - from) * entry;
	}
	return true;
}

bool AABB::intersects_ray(const Vector3 &from, const Vector3 &direction, Vector3 *intersection_out, Vector3 *normal_out) const {
	check_size(*this);
	const Vector3 end = get_end();
	real_t near = -INFINITY;
	real_t far = INFINITY;
	int axis = 0;
	bool inside = true;
	for (int i = 0; i < 3; i++) {
		inside = inside && from[i] >= position[i] && from[i] <= end[i];
		if (direction[i] == 0) {
			if (from[i] < position[i] || from[i] > end[i]) {
				return false;
			}
			continue;
		}
		real_t in = (position[i] - from[i]) / direction[i];
		real_t out = (end[i] - from[i]) / direction[i];
		if (in > out) {
			SWAP(in, out);
		}
		if (in > near) {
			near = in;
			axis = i;
		}
		far = MIN(far, out);
		if (near > far || far < 0) {
			return false;
		}
	}
	// A ray that starts inside hits where it starts.
	if (intersection_out) {
		*intersection_out = from;
		if (!inside) {
			*intersection_out += direction * near;
			// On the side that it enters by, without the rounding.
			(*intersection_out)[axis] = direction[axis] > 0 ? position[axis] : end[axis];
		}
	}
	if (normal_out) {
		*normal_out = Vector3();
		(*normal_out)[axis] = direction[axis] > 0 ? -1 : 1;
	}
	return true;
}

Variant AABB::intersects_segment_bind(const Vector3 &from, const Vector3 &to) const {
	Vector3 point;
	return intersects_segment(from, to, &point) ? Variant(point) : Variant();
}

Variant AABB::intersects_ray_bind(const Vector3 &from, const Vector3 &direction) const {
	Vector3 point;
	return intersects_ray(from, direction, &point) ? Variant(point) : Variant();
}

AABB AABB::intersection(const AABB &with) const {
	check_sizes(*this, with);
	const Vector3 low = position.max(with.position);
	const Vector3 high = get_end().min(with.get_end());
	for (int i = 0; i < 3; i++) {
		if (position[i] > with.get_end()[i] || with.position[i] > get_end()[i]) {
			return AABB();
		}
	}
	return AABB(low, high - low);
}

AABB AABB::merge(const AABB &with) const {
	check_sizes(*this, with);
	const Vector3 low = position.min(with.position);
	return AABB(low, get_end().max(with.get_end()) - low);
}

AABB AABB::expand(const Vector3 &to_point) const {
	check_size(*this);
	const Vector3 low = position.min(to_point);
	return AABB(low, get_end().max(to_point) - low);
}

AABB AABB::grow(real_t by) const {
	return AABB(position - Vector3(by, by, by), size + Vector3(by, by, by) * 2);
}

Vector3 AABB::get_support(const Vector3 &direction) const {
	Vector3 support = position;
	for (int i = 0; i < 3; i++) {
		if (direction[i] > 0) {
			support[i] += size[i];
		}
	}
	return support;
}

Vector3 AABB::get_longest_axis() const {
	return axis_vector(get_longest_axis_index());
}

int AABB::get_longest_axis_index() const {
	int axis = 0;
	for (int i = 1; i < 3; i++) {
		axis = size[i] > size[axis] ? i : axis;
	}
	return axis;
}

Vector3 AABB::get_shortest_axis() const {
	return axis_vector(get_shortest_axis_index());
}

int AABB::get_shortest_axis_index() const {
	int axis = 0;
	for (int i = 1; i < 3; i++) {
		axis = size[i] < size[axis] ? i : axis;
	}
	return axis;
}

Vector3 AABB::get_endpoint(int index) const {
	ERR_FAIL_INDEX_V(index, 8, Vector3());
	return position + Vector3(index & 4 ? size.x : 0, index & 2 ? size.y : 0, index & 1 ? size.z : 0);
}

AABB::operator String() const {
	return String(Variant(*this));
}

} // namespace godot
