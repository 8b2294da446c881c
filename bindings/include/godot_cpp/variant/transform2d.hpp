// Rotation, scale, skew and position in 2D: two axes and an origin as columns. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_TRANSFORM2D_HPP
#define GODOT_CPP_VARIANT_TRANSFORM2D_HPP

#include <godot_cpp/variant/rect2.hpp>

namespace godot {

class PackedVector2Array;

struct [[nodiscard]] Transform2D {
	Vector2 columns[3] = { Vector2(1, 0), Vector2(0, 1), Vector2() };

	constexpr Transform2D() = default;
	constexpr Transform2D(real_t xx, real_t xy, real_t yx, real_t yy, real_t ox, real_t oy) : columns{ Vector2(xx, xy), Vector2(yx, yy), Vector2(ox, oy) } {}
	constexpr Transform2D(const Vector2 &x_axis, const Vector2 &y_axis, const Vector2 &origin) : columns{ x_axis, y_axis, origin } {}
	Transform2D(real_t rotation, const Vector2 &position);
	Transform2D(real_t rotation, const Size2 &scale, real_t skew, const Vector2 &position);

	const Vector2 &operator[](int column) const { return columns[column]; }
	Vector2 &operator[](int column) { return columns[column]; }

	constexpr real_t tdotx(const Vector2 &v) const { return columns[0].x * v.x + columns[1].x * v.y; }
	constexpr real_t tdoty(const Vector2 &v) const { return columns[0].y * v.x + columns[1].y * v.y; }
	constexpr Vector2 basis_xform(const Vector2 &v) const { return Vector2(tdotx(v), tdoty(v)); }
	constexpr Vector2 basis_xform_inv(const Vector2 &v) const { return Vector2(columns[0].dot(v), columns[1].dot(v)); }
	constexpr Vector2 xform(const Vector2 &v) const { return basis_xform(v) + columns[2]; }
	constexpr Vector2 xform_inv(const Vector2 &v) const { return basis_xform_inv(v - columns[2]); }
	Rect2 xform(const Rect2 &rect) const;
	Rect2 xform_inv(const Rect2 &rect) const;
	PackedVector2Array xform(const PackedVector2Array &points) const;
	PackedVector2Array xform_inv(const PackedVector2Array &points) const;

	// These undo rotation and scale only while the axes are orthonormal; affine_inverse always does.
	void invert();
	Transform2D inverse() const;
	void affine_invert();
	Transform2D affine_inverse() const;

	void set_rotation(real_t rotation);
	real_t get_rotation() const { return Math::atan2(columns[0].y, columns[0].x); }
	void set_skew(real_t skew);
	real_t get_skew() const;
	void set_rotation_and_scale(real_t rotation, const Size2 &scale);
	void set_rotation_scale_and_skew(real_t rotation, const Size2 &scale, real_t skew);
	void rotate(real_t angle) { *this = rotated(angle); }
	void scale(const Size2 &amount);
	void scale_basis(const Size2 &amount);
	void translate_local(const Vector2 &offset) { columns[2] += basis_xform(offset); }
	void translate_local(real_t x, real_t y) { translate_local(Vector2(x, y)); }
	constexpr real_t determinant() const { return columns[0].x * columns[1].y - columns[0].y * columns[1].x; }
	Size2 get_scale() const { return Size2(columns[0].length(), SIGN(determinant()) * columns[1].length()); }
	void set_scale(const Size2 &scale);
	const Vector2 &get_origin() const { return columns[2]; }
	void set_origin(const Vector2 &origin) { columns[2] = origin; }

	Transform2D rotated(real_t angle) const { return Transform2D(angle, Vector2()) * *this; }
	Transform2D rotated_local(real_t angle) const { return *this * Transform2D(angle, Vector2()); }
	Transform2D scaled(const Size2 &amount) const;
	Transform2D scaled_local(const Size2 &amount) const { return Transform2D(columns[0] * amount.x, columns[1] * amount.y, columns[2]); }
	Transform2D basis_scaled(const Size2 &amount) const;
	Transform2D translated(const Vector2 &offset) const { return Transform2D(columns[0], columns[1], columns[2] + offset); }
	Transform2D translated_local(const Vector2 &offset) const { return Transform2D(columns[0], columns[1], columns[2] + basis_xform(offset)); }
	Transform2D untranslated() const { return Transform2D(columns[0], columns[1], Vector2()); }
	void orthonormalize();
	Transform2D orthonormalized() const;
	Transform2D looking_at(const Vector2 &target = Vector2()) const;
	Transform2D interpolate_with(const Transform2D &transform, real_t weight) const;

	bool is_conformal() const;
	bool is_equal_approx(const Transform2D &transform) const;
	bool is_same(const Transform2D &transform) const;
	bool is_finite() const { return columns[0].is_finite() && columns[1].is_finite() && columns[2].is_finite(); }
	bool operator==(const Transform2D &transform) const;
	bool operator!=(const Transform2D &transform) const { return !(*this == transform); }

	void operator*=(const Transform2D &transform) { *this = *this * transform; }
	Transform2D operator*(const Transform2D &transform) const {
		return Transform2D(basis_xform(transform.columns[0]), basis_xform(transform.columns[1]), xform(transform.columns[2]));
	}
	void operator*=(real_t value) { *this = *this * value; }
	Transform2D operator*(real_t value) const { return Transform2D(columns[0] * value, columns[1] * value, columns[2] * value); }
	void operator/=(real_t value) { *this = *this / value; }
	Transform2D operator/(real_t value) const { return Transform2D(columns[0] / value, columns[1] / value, columns[2] / value); }

	explicit operator String() const;
};

} // namespace godot

#endif // GODOT_CPP_VARIANT_TRANSFORM2D_HPP
