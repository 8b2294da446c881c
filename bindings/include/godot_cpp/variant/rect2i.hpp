// A rectangle of whole cells or pixels. Sizes are meant to be positive: debug builds report a negative one. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_RECT2I_HPP
#define GODOT_CPP_VARIANT_RECT2I_HPP

#include <godot_cpp/variant/rect2.hpp>
#include <godot_cpp/variant/vector2i.hpp>

namespace godot {

struct [[nodiscard]] Rect2i {
	Point2i position;
	Size2i size;

	constexpr Rect2i() = default;
	constexpr Rect2i(int32_t x, int32_t y, int32_t width, int32_t height) : position(x, y), size(width, height) {}
	constexpr Rect2i(const Point2i &corner, const Size2i &extent) : position(corner), size(extent) {}

	const Vector2i &get_position() const { return position; }
	void set_position(const Vector2i &value) { position = value; }
	const Vector2i &get_size() const { return size; }
	void set_size(const Vector2i &value) { size = value; }
	void set_end(const Vector2i &end) { size = end - position; }
	constexpr Vector2i get_end() const { return position + size; }
	constexpr Vector2i get_center() const { return position + (size / 2); }
	constexpr int32_t get_area() const { return size.width * size.height; }
	bool has_area() const { return size.x > 0 && size.y > 0; }

	bool has_point(const Point2i &point) const;
	bool intersects(const Rect2i &rect) const;
	bool encloses(const Rect2i &rect) const;
	Rect2i intersection(const Rect2i &rect) const;
	Rect2i merge(const Rect2i &rect) const;
	void expand_to(const Point2i &point);
	Rect2i expand(const Vector2i &to) const {
		Rect2i rect = *this;
		rect.expand_to(to);
		return rect;
	}

	Rect2i grow(int32_t amount) const { return grow_individual(amount, amount, amount, amount); }
	Rect2i grow_side(Side side, int32_t amount) const;
	Rect2i grow_individual(int32_t left, int32_t top, int32_t right, int32_t bottom) const {
		return Rect2i(position.x - left, position.y - top, size.width + (left + right), size.height + (top + bottom));
	}
	Rect2i abs() const { return Rect2i(position + size.min(Vector2i()), size.abs()); }

	bool operator==(const Rect2i &rect) const { return position == rect.position && size == rect.size; }
	bool operator!=(const Rect2i &rect) const { return !(*this == rect); }

	explicit operator String() const;
	constexpr operator Rect2() const { return Rect2(position, size); }
};

inline Rect2::operator Rect2i() const {
	return Rect2i(position, size);
}

} // namespace godot

#endif // GODOT_CPP_VARIANT_RECT2I_HPP
