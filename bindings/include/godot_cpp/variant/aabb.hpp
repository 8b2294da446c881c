// A box along the axes in 3D, by its corner and size. Sizes are meant to be positive: debug builds report a negative one. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_AABB_HPP
#define GODOT_CPP_VARIANT_AABB_HPP

#include <godot_cpp/variant/plane.hpp>
#include <godot_cpp/variant/vector3.hpp>

namespace godot {

class Variant;

struct [[nodiscard]] AABB {
	Vector3 position;
	Vector3 size;

	constexpr AABB() = default;
	constexpr AABB(const Vector3 &corner, const Vector3 &extent) : position(corner), size(extent) {}

	const Vector3 &get_position() const { return position; }
	void set_position(const Vector3 &value) { position = value; }
	const Vector3 &get_size() const { return size; }
	void set_size(const Vector3 &value) { size = value; }
	void set_end(const Vector3 &end) { size = end - position; }
	constexpr Vector3 get_end() const { return position + size; }
	constexpr Vector3 get_center() const { return position + (size * 0.5f); }
	constexpr real_t get_volume() const { return size.x * size.y * size.z; }
	bool has_volume() const { return size.x > 0 && size.y > 0 && size.z > 0; }
	bool has_surface() const { return size.x > 0 || size.y > 0 || size.z > 0; }

	bool has_point(const Vector3 &point) const;
	bool intersects(const AABB &with) const;
	bool intersects_inclusive(const AABB &with) const;
	bool encloses(const AABB &with) const;
	bool intersects_plane(const Plane &plane) const;
	bool intersects_segment(const Vector3 &from, const Vector3 &to, Vector3 *intersection_out = nullptr, Vector3 *normal_out = nullptr) const;
	bool intersects_ray(const Vector3 &from, const Vector3 &direction, Vector3 *intersection_out = nullptr, Vector3 *normal_out = nullptr) const;
	// The point, or nil where there is none.
	Variant intersects_segment_bind(const Vector3 &from, const Vector3 &to) const;
	Variant intersects_ray_bind(const Vector3 &from, const Vector3 &direction) const;

	AABB intersection(const AABB &with) const;
	AABB merge(const AABB &with) const;
	void merge_with(const AABB &with) { *this = merge(with); }
	AABB expand(const Vector3 &to_point) const;
	void expand_to(const Vector3 &to_point) { *this = expand(to_point); }
	AABB grow(real_t by) const;
	void grow_by(real_t by) { *this = grow(by); }
	AABB abs() const { return AABB(position + size.min(Vector3()), size.abs()); }

	Vector3 get_support(const Vector3 &direction) const;
	Vector3 get_longest_axis() const;
	int get_longest_axis_index() const;
	real_t get_longest_axis_size() const { return size[get_longest_axis_index()]; }
	Vector3 get_shortest_axis() const;
	int get_shortest_axis_index() const;
	real_t get_shortest_axis_size() const { return size[get_shortest_axis_index()]; }
	Vector3 get_endpoint(int index) const;

	bool is_equal_approx(const AABB &box) const { return position.is_equal_approx(box.position) && size.is_equal_approx(box.size); }
	bool is_same(const AABB &box) const { return position.is_same(box.position) && size.is_same(box.size); }
	bool is_finite() const { return position.is_finite() && size.is_finite(); }
	bool operator==(const AABB &box) const { return position == box.position && size == box.size; }
	bool operator!=(const AABB &box) const { return !(*this == box); }

	explicit operator String() const;
};

} // namespace godot

#endif // GODOT_CPP_VARIANT_AABB_HPP
