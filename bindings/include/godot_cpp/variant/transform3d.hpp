// Rotation, scale and position in 3D: a basis and an origin. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_TRANSFORM3D_HPP
#define GODOT_CPP_VARIANT_TRANSFORM3D_HPP

#include <godot_cpp/variant/aabb.hpp>
#include <godot_cpp/variant/basis.hpp>
#include <godot_cpp/variant/plane.hpp>

namespace godot {

class PackedVector3Array;

struct [[nodiscard]] Transform3D {
	Basis basis;
	Vector3 origin;

	constexpr Transform3D() = default;
	constexpr Transform3D(const Basis &rotation_and_scale, const Vector3 &position = Vector3()) : basis(rotation_and_scale), origin(position) {}
	constexpr Transform3D(const Vector3 &x, const Vector3 &y, const Vector3 &z, const Vector3 &position) : basis(x, y, z), origin(position) {}
	constexpr Transform3D(real_t xx, real_t xy, real_t xz, real_t yx, real_t yy, real_t yz, real_t zx, real_t zy, real_t zz, real_t ox, real_t oy, real_t oz) :
			basis(xx, xy, xz, yx, yy, yz, zx, zy, zz), origin(ox, oy, oz) {}

	const Basis &get_basis() const { return basis; }
	void set_basis(const Basis &value) { basis = value; }
	const Vector3 &get_origin() const { return origin; }
	void set_origin(const Vector3 &value) { origin = value; }

	constexpr Vector3 xform(const Vector3 &v) const {
		return Vector3(basis.rows[0].dot(v) + origin.x, basis.rows[1].dot(v) + origin.y, basis.rows[2].dot(v) + origin.z);
	}
	// The inverse forms undo rotation and scale only while the basis is orthonormal.
	constexpr Vector3 xform_inv(const Vector3 &v) const { return basis.xform_inv(v - origin); }
	AABB xform(const AABB &box) const;
	AABB xform_inv(const AABB &box) const;
	Plane xform(const Plane &plane) const;
	Plane xform_inv(const Plane &plane) const;
	PackedVector3Array xform(const PackedVector3Array &points) const;
	PackedVector3Array xform_inv(const PackedVector3Array &points) const;

	void invert() { *this = inverse(); }
	Transform3D inverse() const;
	void affine_invert() { *this = affine_inverse(); }
	Transform3D affine_inverse() const;

	void rotate(const Vector3 &axis, real_t angle) { *this = rotated(axis, angle); }
	Transform3D rotated(const Vector3 &axis, real_t angle) const;
	void rotate_basis(const Vector3 &axis, real_t angle) { basis.rotate(axis, angle); }
	Transform3D rotated_local(const Vector3 &axis, real_t angle) const { return Transform3D(basis * Basis(axis, angle), origin); }
	void set_look_at(const Vector3 &eye, const Vector3 &target, const Vector3 &up = Vector3(0, 1, 0), bool use_model_front = false);
	Transform3D looking_at(const Vector3 &target, const Vector3 &up = Vector3(0, 1, 0), bool use_model_front = false) const;
	void scale(const Vector3 &amount) { *this = scaled(amount); }
	void scale_basis(const Vector3 &amount) { basis.scale(amount); }
	Transform3D scaled(const Vector3 &amount) const { return Transform3D(basis.scaled(amount), origin * amount); }
	Transform3D scaled_local(const Vector3 &amount) const { return Transform3D(basis.scaled_local(amount), origin); }
	void translate_local(const Vector3 &offset) { origin = xform(offset); }
	void translate_local(real_t x, real_t y, real_t z) { translate_local(Vector3(x, y, z)); }
	Transform3D translated(const Vector3 &offset) const { return Transform3D(basis, origin + offset); }
	Transform3D translated_local(const Vector3 &offset) const { return Transform3D(basis, origin + basis.xform(offset)); }
	void orthonormalize() { basis.orthonormalize(); }
	Transform3D orthonormalized() const { return Transform3D(basis.orthonormalized(), origin); }
	void orthogonalize() { basis.orthogonalize(); }
	Transform3D orthogonalized() const { return Transform3D(basis.orthogonalized(), origin); }
	Transform3D interpolate_with(const Transform3D &transform, real_t weight) const;

	bool is_equal_approx(const Transform3D &transform) const { return basis.is_equal_approx(transform.basis) && origin.is_equal_approx(transform.origin); }
	bool is_same(const Transform3D &transform) const { return basis.is_same(transform.basis) && origin.is_same(transform.origin); }
	bool is_finite() const { return basis.is_finite() && origin.is_finite(); }
	bool operator==(const Transform3D &transform) const { return basis == transform.basis && origin == transform.origin; }
	bool operator!=(const Transform3D &transform) const { return !(*this == transform); }

	void operator*=(const Transform3D &transform) { *this = *this * transform; }
	constexpr Transform3D operator*(const Transform3D &transform) const { return Transform3D(basis * transform.basis, xform(transform.origin)); }
	void operator*=(real_t value) { *this = *this * value; }
	Transform3D operator*(real_t value) const { return Transform3D(basis * value, origin * value); }
	void operator/=(real_t value) { *this = *this / value; }
	Transform3D operator/(real_t value) const { return Transform3D(basis / value, origin / value); }

	explicit operator String() const;
};

} // namespace godot

#endif // GODOT_CPP_VARIANT_TRANSFORM3D_HPP
