#include <godot_cpp/variant/transform3d.hpp>

#include "math_checks.hpp"

#include <godot_cpp/variant/packed_vector3_array.hpp>

namespace godot {

AABB Transform3D::xform(const AABB &box) const {
	// Each row adds its smaller products to the one corner and its larger ones to the other.
	const Vector3 low = box.position;
	const Vector3 high = box.get_end();
	Vector3 begin;
	Vector3 end;
	for (int i = 0; i < 3; i++) {
		begin[i] = end[i] = origin[i];
		for (int j = 0; j < 3; j++) {
			const real_t a = basis.rows[i][j] * low[j];
			const real_t b = basis.rows[i][j] * high[j];
			begin[i] += MIN(a, b);
			end[i] += MAX(a, b);
		}
	}
	return AABB(begin, end - begin);
}

AABB Transform3D::xform_inv(const AABB &box) const {
	AABB result(xform_inv(box.get_endpoint(7)), Vector3());
	for (int i = 6; i >= 0; i--) {
		result.expand_to(xform_inv(box.get_endpoint(i)));
	}
	return result;
}

Plane Transform3D::xform(const Plane &plane) const {
	// A normal turns with the inverse transpose, or scaling would tilt it.
	const Vector3 normal = basis.inverse().transposed().xform(plane.normal).normalized();
	return Plane(normal, normal.dot(xform(plane.normal * plane.d)));
}

Plane Transform3D::xform_inv(const Plane &plane) const {
	const Vector3 normal = basis.transposed().xform(plane.normal).normalized();
	return Plane(normal, normal.dot(affine_inverse().xform(plane.normal * plane.d)));
}

PackedVector3Array Transform3D::xform(const PackedVector3Array &points) const {
	PackedVector3Array result = points;
	Vector3 *at = result.ptrw();
	for (int64_t i = 0; i < result.size(); i++) {
		at[i] = xform(at[i]);
	}
	return result;
}

PackedVector3Array Transform3D::xform_inv(const PackedVector3Array &points) const {
	PackedVector3Array result = points;
	Vector3 *at = result.ptrw();
	for (int64_t i = 0; i < result.size(); i++) {
		at[i] = xform_inv(at[i]);
	}
	return result;
}

Transform3D Transform3D::inverse() const {
	const Basis back = basis.transposed();
	return Transform3D(back, back.xform(-origin));
}

Transform3D Transform3D::affine_inverse() const {
	const Basis back = basis.inverse();
	return Transform3D(back, back.xform(-origin));
}

Transform3D Transform3D::rotated(const Vector3 &axis, real_t angle) const {
	const Basis turn(axis, angle);
	return Transform3D(turn * basis, turn.xform(origin));
}

void Transform3D::set_look_at(const Vector3 &eye, const Vector3 &target, const Vector3 &up, bool use_model_front) {
#ifdef MATH_CHECKS
	ERR_FAIL_COND_MSG(eye.is_equal_approx(target), "The eye and target vectors can't be equal.");
#endif
	*this = Transform3D(Basis::looking_at(target - eye, up, use_model_front), eye);
}

Transform3D Transform3D::looking_at(const Vector3 &target, const Vector3 &up, bool use_model_front) const {
	CHECK_MATH(!origin.is_equal_approx(target), Transform3D(), "The transform's origin and target can't be equal.");
	return Transform3D(Basis::looking_at(target - origin, up, use_model_front), origin);
}

Transform3D Transform3D::interpolate_with(const Transform3D &transform, real_t weight) const {
	const Quaternion rotation = basis.get_rotation_quaternion().slerp(transform.basis.get_rotation_quaternion(), weight).normalized();
	const Vector3 scale = basis.get_scale().lerp(transform.basis.get_scale(), weight);
	return Transform3D(Basis(rotation, scale), origin.lerp(transform.origin, weight));
}

Transform3D::operator String() const {
	return String(Variant(*this));
}

} // namespace godot
