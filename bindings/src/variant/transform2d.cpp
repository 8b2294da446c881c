#include <godot_cpp/variant/transform2d.hpp>

#include "math_checks.hpp"

#include <godot_cpp/variant/packed_vector2_array.hpp>

namespace godot {

Transform2D::Transform2D(real_t rotation, const Vector2 &position) {
	const real_t cosine = Math::cos(rotation);
	const real_t sine = Math::sin(rotation);
	columns[0] = Vector2(cosine, sine);
	columns[1] = Vector2(-sine, cosine);
	columns[2] = position;
}

Transform2D::Transform2D(real_t rotation, const Size2 &scale, real_t skew, const Vector2 &position) {
	set_rotation_scale_and_skew(rotation, scale, skew);
	columns[2] = position;
}

Rect2 Transform2D::xform(const Rect2 &rect) const {
	const Vector2 x = columns[0] * rect.size.x;
	const Vector2 y = columns[1] * rect.size.y;
	const Vector2 corner = xform(rect.position);
	Rect2 result(corner, Size2());
	result.expand_to(corner + x);
	result.expand_to(corner + y);
	result.expand_to(corner + x + y);
	return result;
}

Rect2 Transform2D::xform_inv(const Rect2 &rect) const {
	const Vector2 end = rect.get_end();
	Rect2 result(xform_inv(rect.position), Size2());
	result.expand_to(xform_inv(Vector2(rect.position.x, end.y)));
	result.expand_to(xform_inv(end));
	result.expand_to(xform_inv(Vector2(end.x, rect.position.y)));
	return result;
}

PackedVector2Array Transform2D::xform(const PackedVector2Array &points) const {
	PackedVector2Array result = points;
	Vector2 *at = result.ptrw();
	for (int64_t i = 0; i < result.size(); i++) {
		at[i] = xform(at[i]);
	}
	return result;
}

PackedVector2Array Transform2D::xform_inv(const PackedVector2Array &points) const {
	PackedVector2Array result = points;
	Vector2 *at = result.ptrw();
	for (int64_t i = 0; i < result.size(); i++) {
		at[i] = xform_inv(at[i]);
	}
	return result;
}

void Transform2D::invert() {
	SWAP(columns[0].y, columns[1].x);
	columns[2] = basis_xform(-columns[2]);
}

Transform2D Transform2D::inverse() const {
	Transform2D result = *this;
	result.invert();
	return result;
}

void Transform2D::affine_invert() {
	const real_t det = determinant();
#ifdef MATH_CHECKS
	ERR_FAIL_COND(det == 0);
#endif
	const real_t share = 1.0f / det;
	SWAP(columns[0].x, columns[1].y);
	columns[0] *= Vector2(share, -share);
	columns[1] *= Vector2(-share, share);
	columns[2] = basis_xform(-columns[2]);
}

Transform2D Transform2D::affine_inverse() const {
	Transform2D result = *this;
	result.affine_invert();
	return result;
}

void Transform2D::set_rotation(real_t rotation) {
	const Size2 scale = get_scale();
	*this = Transform2D(rotation, columns[2]);
	set_scale(scale);
}

void Transform2D::set_skew(real_t skew) {
	const real_t length = columns[1].length();
	columns[1] = SIGN(determinant()) * columns[0].rotated(real_t(Math::PI * 0.5f + skew)).normalized() * length;
}

real_t Transform2D::get_skew() const {
	return Math::acos(columns[0].normalized().dot(SIGN(determinant()) * columns[1].normalized())) - real_t(Math::PI) * 0.5f;
}

void Transform2D::set_rotation_and_scale(real_t rotation, const Size2 &scale) {
	set_rotation_scale_and_skew(rotation, scale, 0);
}

void Transform2D::set_rotation_scale_and_skew(real_t rotation, const Size2 &scale, real_t skew) {
	columns[0] = Vector2(Math::cos(rotation), Math::sin(rotation)) * scale.x;
	columns[1] = Vector2(-Math::sin(rotation + skew), Math::cos(rotation + skew)) * scale.y;
}

void Transform2D::scale(const Size2 &amount) {
	scale_basis(amount);
	columns[2] *= amount;
}

void Transform2D::scale_basis(const Size2 &amount) {
	columns[0] *= amount;
	columns[1] *= amount;
}

void Transform2D::set_scale(const Size2 &scale) {
	columns[0].normalize();
	columns[1].normalize();
	columns[0] *= scale.x;
	columns[1] *= scale.y;
}

Transform2D Transform2D::scaled(const Size2 &amount) const {
	return Transform2D(columns[0] * amount, columns[1] * amount, columns[2] * amount);
}

Transform2D Transform2D::basis_scaled(const Size2 &amount) const {
	return Transform2D(columns[0] * amount, columns[1] * amount, columns[2]);
}

void Transform2D::orthonormalize() {
	columns[0].normalize();
	columns[1] = columns[1] - columns[0] * columns[0].dot(columns[1]);
	columns[1].normalize();
}

Transform2D Transform2D::orthonormalized() const {
	Transform2D result = *this;
	result.orthonormalize();
	return result;
}

Transform2D Transform2D::looking_at(const Vector2 &target) const {
	Transform2D result(get_rotation(), get_origin());
	const Vector2 local = affine_inverse().xform(target);
	result.set_rotation(result.get_rotation() + (local * get_scale()).angle());
	return result;
}

Transform2D Transform2D::interpolate_with(const Transform2D &transform, real_t weight) const {
	return Transform2D(Math::lerp_angle(get_rotation(), transform.get_rotation(), weight), get_scale().lerp(transform.get_scale(), weight),
			Math::lerp_angle(get_skew(), transform.get_skew(), weight), get_origin().lerp(transform.get_origin(), weight));
}

bool Transform2D::is_conformal() const {
	if (Math::is_equal_approx(columns[0].x, columns[1].y) && Math::is_equal_approx(columns[0].y, -columns[1].x)) {
		return true;
	}
	// Mirrored.
	return Math::is_equal_approx(columns[0].x, -columns[1].y) && Math::is_equal_approx(columns[0].y, columns[1].x);
}

bool Transform2D::is_equal_approx(const Transform2D &transform) const {
	return columns[0].is_equal_approx(transform.columns[0]) && columns[1].is_equal_approx(transform.columns[1]) &&
			columns[2].is_equal_approx(transform.columns[2]);
}

bool Transform2D::is_same(const Transform2D &transform) const {
	return columns[0].is_same(transform.columns[0]) && columns[1].is_same(transform.columns[1]) && columns[2].is_same(transform.columns[2]);
}

bool Transform2D::operator==(const Transform2D &transform) const {
	return columns[0] == transform.columns[0] && columns[1] == transform.columns[1] && columns[2] == transform.columns[2];
}

Transform2D::operator String() const {
	return String(Variant(*this));
}

} // namespace godot
