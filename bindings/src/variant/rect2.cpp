#include <godot_cpp/variant/rect2i.hpp>
#include <godot_cpp/variant/transform2d.hpp>

#include "math_checks.hpp"

namespace godot {

namespace {

template <typename R>
void check_sizes(const R &a, const R &b, [[maybe_unused]] const char *message) {
#ifdef MATH_CHECKS
	if (unlikely(a.size.x < 0 || a.size.y < 0 || b.size.x < 0 || b.size.y < 0)) {
		ERR_PRINT(message);
	}
#else
	(void)a;
	(void)b;
#endif
}

void check_sizes(const Rect2 &a, const Rect2 &b) {
	check_sizes(a, b, "Rect2 size is negative, this is not supported. Use Rect2.abs() to get a Rect2 with a positive size.");
}

void check_sizes(const Rect2i &a, const Rect2i &b) {
	check_sizes(a, b, "Rect2i size is negative, this is not supported. Use Rect2i.abs() to get a Rect2i with a positive size.");
}

// What both kinds of rectangle do alike.

template <typename R, typename P>
bool has_point_in(const R &rect, const P &point) {
	check_sizes(rect, rect);
	return point.x >= rect.position.x && point.y >= rect.position.y && point.x < rect.position.x + rect.size.x && point.y < rect.position.y + rect.size.y;
}

template <typename R>
bool overlap(const R &a, const R &b) {
	check_sizes(a, b);
	return a.position.x < b.position.x + b.size.x && a.position.x + a.size.x > b.position.x && a.position.y < b.position.y + b.size.y &&
			a.position.y + a.size.y > b.position.y;
}

template <typename R>
bool contains(const R &outer, const R &inner) {
	check_sizes(outer, inner);
	return inner.position.x >= outer.position.x && inner.position.y >= outer.position.y && inner.position.x + inner.size.x <= outer.position.x + outer.size.x &&
			inner.position.y + inner.size.y <= outer.position.y + outer.size.y;
}

template <typename R>
R common_part(const R &a, const R &b) {
	R part;
	part.position = a.position.max(b.position);
	part.size = a.get_end().min(b.get_end()) - part.position;
	return part;
}

template <typename R>
R around_both(const R &a, const R &b) {
	check_sizes(a, b);
	R both;
	both.position = a.position.min(b.position);
	both.size = a.get_end().max(b.get_end()) - both.position;
	return both;
}

template <typename R, typename P>
void stretch_to(R &rect, const P &point) {
	check_sizes(rect, rect);
	const P begin = rect.position.min(point);
	const P end = rect.get_end().max(point);
	rect.position = begin;
	rect.size = end - begin;
}

template <typename R, typename N>
R grown_on_side(const R &rect, Side side, N amount) {
	return rect.grow_individual(
			side == SIDE_LEFT ? amount : 0, side == SIDE_TOP ? amount : 0, side == SIDE_RIGHT ? amount : 0, side == SIDE_BOTTOM ? amount : 0);
}

} // namespace

bool Rect2::has_point(const Point2 &point) const {
	return has_point_in(*this, point);
}

bool Rect2::intersects(const Rect2 &rect, bool include_borders) const {
	if (!include_borders) {
		return overlap(*this, rect);
	}
	check_sizes(*this, rect);
	const Vector2 end = get_end();
	const Vector2 other_end = rect.get_end();
	return position.x <= other_end.x && end.x >= rect.position.x && position.y <= other_end.y && end.y >= rect.position.y;
}

bool Rect2::intersects_transformed(const Transform2D &transform, const Rect2 &rect) const {
	// Two boxes are apart when their shadows are on one of the four directions of their sides.
	const Vector2 mine[4] = { position, position + Vector2(size.x, 0), position + Vector2(0, size.y), get_end() };
	Vector2 other[4];
	const Vector2 corner = transform.xform(rect.position);
	const Vector2 side_x = transform.columns[0] * rect.size.x;
	const Vector2 side_y = transform.columns[1] * rect.size.y;
	other[0] = corner;
	other[1] = corner + side_x;
	other[2] = corner + side_y;
	other[3] = corner + side_x + side_y;
	const Vector2 directions[4] = { Vector2(1, 0), Vector2(0, 1), transform.columns[0].orthogonal(), transform.columns[1].orthogonal() };
	for (const Vector2 &direction : directions) {
		real_t min_mine = direction.dot(mine[0]), max_mine = min_mine;
		real_t min_other = direction.dot(other[0]), max_other = min_other;
		for (int i = 1; i < 4; i++) {
			min_mine = MIN(min_mine, direction.dot(mine[i]));
			max_mine = MAX(max_mine, direction.dot(mine[i]));
			min_other = MIN(min_other, direction.dot(other[i]));
			max_other = MAX(max_other, direction.dot(other[i]));
		}
		if (min_mine > max_other || min_other > max_mine) {
			return false;
		}
	}
	return true;
}

bool Rect2::intersects_segment(const Point2 &from, const Point2 &to, Point2 *position_out, Point2 *normal_out) const {
	check_sizes(*this, *this);
	real_t entry = 0;
	real_t exit = 1;
	int entry_axis = 0;
	real_t entry_sign = 0;
	for (int axis = 0; axis < 2; axis++) {
		const real_t start = from[axis];
		const real_t way = to[axis] - start;
		const real_t low = position[axis];
		const real_t high = low + size[axis];
		if (way == 0) {
			if (start < low || start > high) {
				return false;
			}
			continue;
		}
		const real_t in = ((way > 0 ? low : high) - start) / way;
		const real_t out = ((way > 0 ? high : low) - start) / way;
		if (in > entry) {
			entry = in;
			entry_axis = axis;
			entry_sign = way > 0 ? -1 : 1;
		}
		exit = MIN(exit, out);
		if (exit < entry) {
			return false;
		}
	}
	if (normal_out) {
		*normal_out = Vector2();
		(*normal_out)[entry_axis] = entry_sign;
	}
	if (position_out) {
		*position_out = from + (to - from) * entry;
	}
	return true;
}

bool Rect2::encloses(const Rect2 &rect) const {
	return contains(*this, rect);
}

real_t Rect2::distance_to(const Vector2 &point) const {
	check_sizes(*this, *this);
	// Inside, the distance to the nearest edge counts as negative.
	const Vector2 outside = (position - point).max(point - get_end());
	if (outside.x < 0 && outside.y < 0) {
		return MAX(outside.x, outside.y);
	}
	return outside.max(Vector2()).length();
}

Rect2 Rect2::intersection(const Rect2 &rect) const {
	return intersects(rect) ? common_part(*this, rect) : Rect2();
}

Rect2 Rect2::merge(const Rect2 &rect) const {
	return around_both(*this, rect);
}

void Rect2::expand_to(const Vector2 &point) {
	stretch_to(*this, point);
}

Vector2 Rect2::get_support(const Vector2 &direction) const {
	return position + Vector2(direction.x > 0 ? size.x : 0, direction.y > 0 ? size.y : 0);
}

Rect2 Rect2::grow_side(Side side, real_t amount) const {
	return grown_on_side(*this, side, amount);
}

Rect2::operator String() const {
	return String(Variant(*this));
}

bool Rect2i::has_point(const Point2i &point) const {
	return has_point_in(*this, point);
}

bool Rect2i::intersects(const Rect2i &rect) const {
	return overlap(*this, rect);
}

bool Rect2i::encloses(const Rect2i &rect) const {
	return contains(*this, rect);
}

Rect2i Rect2i::intersection(const Rect2i &rect) const {
	return intersects(rect) ? common_part(*this, rect) : Rect2i();
}

Rect2i Rect2i::merge(const Rect2i &rect) const {
	return around_both(*this, rect);
}

void Rect2i::expand_to(const Point2i &point) {
	stretch_to(*this, point);
}

Rect2i Rect2i::grow_side(Side side, int32_t amount) const {
	return grown_on_side(*this, side, amount);
}

Rect2i::operator String() const {
	return String(Variant(*this));
}

} // namespace godot
