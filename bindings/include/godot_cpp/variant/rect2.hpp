// A rectangle along the axes, by its corner and size. Sizes are meant to be positive: debug builds report a negative one. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_RECT2_HPP
#define GODOT_CPP_VARIANT_RECT2_HPP

#include <godot_cpp/classes/global_constants.hpp>
#include <godot_cpp/variant/vector2.hpp>

namespace godot {

struct Rect2i;
struct Transform2D;

struct [[nodiscard]] Rect2 {
	Point2 position;
	Size2 size;

	constexpr Rect2() = default;
	constexpr Rect2(real_t x, real_t y, real_t width, real_t height) : position(x, y), size(width, height) {}
	constexpr Rect2(const Point2 &corner, const Size2 &extent) : position(corner), size(extent) {}

	const Vector2 &get_position() const { return position; }
	void set_position(const Vector2 &value) { position = value; }
	const Vector2 &get_size() const { return size; }
	void set_size(const Vector2 &value) { size = value; }
	void set_end(const Vector2 &end) { size = end - position; }
	constexpr Vector2 get_end() const { return position + size; }
	constexpr Vector2 get_center() const { return position + (size * 0.5f); }
	constexpr real_t get_area() const { return size.width * size.height; }
	bool has_area() const { return size.x > 0 && size.y > 0; }

	bool has_point(const Point2 &point) const;
	bool intersects(const Rect2 &rect, bool include_borders = false) const;
	bool intersects_transformed(const Transform2D &transform, const Rect2 &rect) const;
	bool intersects_segment(const Point2 &from, const Point2 &to, Point2 *position_out = nullptr, Point2 *normal_out = nullptr) const;
	bool encloses(const Rect2 &rect) const;
	real_t distance_to(const Vector2 &point) const;
	Rect2 intersection(const Rect2 &rect) const;
	Rect2 merge(const Rect2 &rect) const;
	void expand_to(const Vector2 &point);
	Rect2 expand(const Vector2 &to) const {
		Rect2 rect = *this;
		rect.expand_to(to);
		return rect;
	}
	Vector2 get_support(const Vector2 &direction) const;

	Rect2 grow(real_t amount) const { return grow_individual(amount, amount, amount, amount); }
	void grow_by(real_t amount) { *this = grow(amount); }
	Rect2 grow_side(Side side, real_t amount) const;
	Rect2 grow_individual(real_t left, real_t top, real_t right, real_t bottom) const {
		return Rect2(position.x - left, position.y - top, size.width + (left + right), size.height + (top + bottom));
	}
	Rect2 abs() const { return Rect2(position + size.min(Vector2()), size.abs()); }
	Rect2 round() const { return Rect2(position.round(), size.round()); }

	bool is_equal_approx(const Rect2 &rect) const { return position.is_equal_approx(rect.position) && size.is_equal_approx(rect.size); }
	bool is_same(const Rect2 &rect) const { return position.is_same(rect.position) && size.is_same(rect.size); }
	bool is_finite() const { return position.is_finite() && size.is_finite(); }
	bool operator==(const Rect2 &rect) const { return position == rect.position && size == rect.size; }
	bool operator!=(const Rect2 &rect) const { return !(*this == rect); }

	explicit operator String() const;
	operator Rect2i() const;
};

} // namespace godot

#endif // GODOT_CPP_VARIANT_RECT2_HPP
