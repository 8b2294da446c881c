#include <godot_cpp/variant/projection.hpp>

#include "math_checks.hpp"

namespace godot {

Projection::Projection(const Transform3D &transform) {
	for (int i = 0; i < 3; i++) {
		const Vector3 axis = transform.basis.get_column(i);
		columns[i] = Vector4(axis.x, axis.y, axis.z, 0);
	}
	columns[3] = Vector4(transform.origin.x, transform.origin.y, transform.origin.z, 1);
}

Projection::operator Transform3D() const {
	Transform3D transform;
	for (int i = 0; i < 3; i++) {
		transform.basis.set_column(i, Vector3(columns[i].x, columns[i].y, columns[i].z));
	}
	transform.origin = Vector3(columns[3].x, columns[3].y, columns[3].z);
	return transform;
}

Projection Projection::create_depth_correction(bool flip_y) {
	// From -1..1 to the reversed 0..1 that the renderer's depth buffer has.
	return Projection(Vector4(1, 0, 0, 0), Vector4(0, flip_y ? -1 : 1, 0, 0), Vector4(0, 0, -0.5f, 0), Vector4(0, 0, 0.5f, 1));
}

Projection Projection::create_light_atlas_rect(const Rect2 &rect) {
	return Projection(
			Vector4(rect.size.width, 0, 0, 0), Vector4(0, rect.size.height, 0, 0), Vector4(0, 0, 1, 0), Vector4(rect.position.x, rect.position.y, 0, 1));
}

Projection Projection::create_perspective(real_t fovy_degrees, real_t aspect, real_t z_near, real_t z_far, bool flip_fov) {
	if (flip_fov) {
		fovy_degrees = get_fovy(fovy_degrees, 1.0f / aspect);
	}
	const real_t half = real_t(Math::deg_to_rad(fovy_degrees / 2.0));
	const real_t depth = z_far - z_near;
	const real_t sine = Math::sin(half);
	if (depth == 0 || sine == 0 || aspect == 0) {
		return Projection();
	}
	const real_t cotangent = Math::cos(half) / sine;
	return Projection(Vector4(cotangent / aspect, 0, 0, 0), Vector4(0, cotangent, 0, 0), Vector4(0, 0, -(z_far + z_near) / depth, -1),
			Vector4(0, 0, -2 * z_near * z_far / depth, 0));
}

Projection Projection::create_perspective_hmd(
		real_t fovy_degrees, real_t aspect, real_t z_near, real_t z_far, bool flip_fov, int eye, real_t intraocular_dist, real_t convergence_dist) {
	if (flip_fov) {
		fovy_degrees = get_fovy(fovy_degrees, 1.0f / aspect);
	}
	const real_t y_max = real_t(z_near * Math::tan(Math::deg_to_rad(fovy_degrees / 2.0)));
	const real_t x_max = y_max * aspect;
	// 1 is the left eye, 2 the right one.
	const real_t side = eye == 1 ? 1.0f : (eye == 2 ? -1.0f : 0.0f);
	const real_t shift = side * real_t((intraocular_dist / 2.0) * z_near / convergence_dist);
	Projection translation;
	translation.columns[3].x = side * (intraocular_dist / 2.0f);
	return create_frustum(-x_max + shift, x_max + shift, -y_max, y_max, z_near, z_far) * translation;
}

Projection Projection::create_for_hmd(
		int eye, real_t aspect, real_t intraocular_dist, real_t display_width, real_t display_to_lens, real_t oversample, real_t z_near, real_t z_far) {
	real_t inner = (intraocular_dist * 0.5f) / display_to_lens;
	real_t outer = ((display_width - intraocular_dist) * 0.5f) / display_to_lens;
	real_t upper = (display_width / 4.0f) / display_to_lens;
	// The lens shows less than the screen has: draw more around the edges.
	const real_t more = ((inner + outer) * (oversample - 1.0f)) / 2.0f;
	inner += more;
	outer += more;
	upper = upper * oversample / aspect;
	if (eye == 1) {
		return create_frustum(-outer * z_near, inner * z_near, -upper * z_near, upper * z_near, z_near, z_far);
	}
	if (eye == 2) {
		return create_frustum(-inner * z_near, outer * z_near, -upper * z_near, upper * z_near, z_near, z_far);
	}
	return Projection();
}

Projection Projection::create_orthogonal(real_t left, real_t right, real_t bottom, real_t top, real_t z_near, real_t z_far) {
	return Projection(Vector4(2.0f / (right - left), 0, 0, 0), Vector4(0, 2.0f / (top - bottom), 0, 0), Vector4(0, 0, -2.0f / (z_far - z_near), 0),
			Vector4(-((right + left) / (right - left)), -((top + bottom) / (top - bottom)), -((z_far + z_near) / (z_far - z_near)), 1));
}

Projection Projection::create_orthogonal_aspect(real_t size, real_t aspect, real_t z_near, real_t z_far, bool flip_fov) {
	if (!flip_fov) {
		size *= aspect;
	}
	return create_orthogonal(-size / 2, size / 2, -size / aspect / 2, size / aspect / 2, z_near, z_far);
}

Projection Projection::create_frustum(real_t left, real_t right, real_t bottom, real_t top, real_t z_near, real_t z_far) {
	ERR_FAIL_COND_V(right <= left, Projection());
	ERR_FAIL_COND_V(top <= bottom, Projection());
	ERR_FAIL_COND_V(z_far <= z_near, Projection());
	return Projection(Vector4(2 * z_near / (right - left), 0, 0, 0), Vector4(0, 2 * z_near / (top - bottom), 0, 0),
			Vector4((right + left) / (right - left), (top + bottom) / (top - bottom), -(z_far + z_near) / (z_far - z_near), -1),
			Vector4(0, 0, -2 * z_far * z_near / (z_far - z_near), 0));
}

Projection Projection::create_frustum_aspect(real_t size, real_t aspect, const Vector2 &offset, real_t z_near, real_t z_far, bool flip_fov) {
	if (!flip_fov) {
		size *= aspect;
	}
	return create_frustum(-size / 2 + offset.x, size / 2 + offset.x, -size / aspect / 2 + offset.y, size / aspect / 2 + offset.y, z_near, z_far);
}

Projection Projection::create_fit_aabb(const AABB &box) {
	const Vector3 low = box.position;
	const Vector3 high = box.get_end();
	Projection result;
	for (int i = 0; i < 3; i++) {
		result.columns[i][i] = 2 / (high[i] - low[i]);
		result.columns[3][i] = -(high[i] + low[i]) / (high[i] - low[i]);
	}
	return result;
}

real_t Projection::get_fovy(real_t fovx, real_t aspect) {
	return real_t(Math::rad_to_deg(Math::atan(aspect * Math::tan(Math::deg_to_rad(fovx) * 0.5)) * 2.0));
}

real_t Projection::determinant() const {
	const Vector4 *c = columns;
	return c[0][3] * c[1][2] * c[2][1] * c[3][0] - c[0][2] * c[1][3] * c[2][1] * c[3][0] - c[0][3] * c[1][1] * c[2][2] * c[3][0] +
			c[0][1] * c[1][3] * c[2][2] * c[3][0] + c[0][2] * c[1][1] * c[2][3] * c[3][0] - c[0][1] * c[1][2] * c[2][3] * c[3][0] -
			c[0][3] * c[1][2] * c[2][0] * c[3][1] + c[0][2] * c[1][3] * c[2][0] * c[3][1] + c[0][3] * c[1][0] * c[2][2] * c[3][1] -
			c[0][0] * c[1][3] * c[2][2] * c[3][1] - c[0][2] * c[1][0] * c[2][3] * c[3][1] + c[0][0] * c[1][2] * c[2][3] * c[3][1] +
			c[0][3] * c[1][1] * c[2][0] * c[3][2] - c[0][1] * c[1][3] * c[2][0] * c[3][2] - c[0][3] * c[1][0] * c[2][1] * c[3][2] +
			c[0][0] * c[1][3] * c[2][1] * c[3][2] + c[0][1] * c[1][0] * c[2][3] * c[3][2] - c[0][0] * c[1][1] * c[2][3] * c[3][2] -
			c[0][2] * c[1][1] * c[2][0] * c[3][3] + c[0][1] * c[1][2] * c[2][0] * c[3][3] + c[0][2] * c[1][0] * c[2][1] * c[3][3] -
			c[0][0] * c[1][2] * c[2][1] * c[3][3] - c[0][1] * c[1][0] * c[2][2] * c[3][3] + c[0][0] * c[1][1] * c[2][2] * c[3][3];
}

Projection Projection::inverse() const {
	// By 2x2 minors: `upper` of the first two columns, `lower` of the last two, for each pair of rows.
	const Vector4 &a = columns[0], &b = columns[1], &c = columns[2], &d = columns[3];
	const auto minor = [](const Vector4 &p, const Vector4 &q, int row1, int row2) { return p[row1] * q[row2] - q[row1] * p[row2]; };
	const real_t u01 = minor(a, b, 0, 1), u02 = minor(a, b, 0, 2), u03 = minor(a, b, 0, 3);
	const real_t u12 = minor(a, b, 1, 2), u13 = minor(a, b, 1, 3), u23 = minor(a, b, 2, 3);
	const real_t l01 = minor(c, d, 0, 1), l02 = minor(c, d, 0, 2), l03 = minor(c, d, 0, 3);
	const real_t l12 = minor(c, d, 1, 2), l13 = minor(c, d, 1, 3), l23 = minor(c, d, 2, 3);
	const real_t det = u01 * l23 - u02 * l13 + u03 * l12 + u12 * l03 - u13 * l02 + u23 * l01;
	if (det == 0) {
		return *this;
	}
	const real_t s = 1.0f / det;
	return Projection(Vector4(b[1] * l23 - b[2] * l13 + b[3] * l12, -a[1] * l23 + a[2] * l13 - a[3] * l12, d[1] * u23 - d[2] * u13 + d[3] * u12,
							  -c[1] * u23 + c[2] * u13 - c[3] * u12) *
					s,
			Vector4(-b[0] * l23 + b[2] * l03 - b[3] * l02, a[0] * l23 - a[2] * l03 + a[3] * l02, -d[0] * u23 + d[2] * u03 - d[3] * u02,
					c[0] * u23 - c[2] * u03 + c[3] * u02) *
					s,
			Vector4(b[0] * l13 - b[1] * l03 + b[3] * l01, -a[0] * l13 + a[1] * l03 - a[3] * l01, d[0] * u13 - d[1] * u03 + d[3] * u01,
					-c[0] * u13 + c[1] * u03 - c[3] * u01) *
					s,
			Vector4(-b[0] * l12 + b[1] * l02 - b[2] * l01, a[0] * l12 - a[1] * l02 + a[2] * l01, -d[0] * u12 + d[1] * u02 - d[2] * u01,
					c[0] * u12 - c[1] * u02 + c[2] * u01) *
					s);
}

Projection Projection::perspective_znear_adjusted(real_t new_znear) const {
	const real_t z_far = get_z_far();
	const real_t depth = z_far - new_znear;
	Projection result = *this;
	result.columns[2][2] = -(z_far + new_znear) / depth;
	result.columns[3][2] = -2 * new_znear * z_far / depth;
	return result;
}

Plane Projection::get_projection_plane(Planes plane) const {
	ERR_FAIL_INDEX_V(int(plane), 6, Plane());
	// Each plane is the last row plus or minus the row of its axis.
	static const int ROWS[6] = { 2, 2, 0, 1, 0, 1 };
	const bool low = plane == PLANE_NEAR || plane == PLANE_LEFT || plane == PLANE_BOTTOM;
	const int row = ROWS[plane];
	const auto part = [&](int column) { return low ? columns[column][3] + columns[column][row] : columns[column][3] - columns[column][row]; };
	Plane result(part(0), part(1), part(2), part(3));
	result.normal = -result.normal;
	result.normalize();
	return result;
}

Projection Projection::flipped_y() const {
	Projection result = *this;
	result.columns[1] = -columns[1];
	return result;
}

Projection Projection::jitter_offseted(const Vector2 &offset) const {
	Projection result = *this;
	result.columns[3].x += offset.x;
	result.columns[3].y += offset.y;
	return result;
}

real_t Projection::get_z_far() const {
	return (columns[3][2] - columns[3][3]) / (columns[2][2] - columns[2][3]);
}

real_t Projection::get_z_near() const {
	return (columns[3][3] + columns[3][2]) / (columns[2][2] + columns[2][3]);
}

real_t Projection::get_aspect() const {
	return columns[1][1] / columns[0][0];
}

real_t Projection::get_fov() const {
	if (columns[2][0] == 0) {
		return Math::rad_to_deg(real_t(2 * Math::atan2(1.0, double(columns[0][0]))));
	}
	// Off-centre, as for one of two eyes.
	return Math::rad_to_deg(Math::atan2(1 - columns[2][0], columns[0][0]) + Math::atan2(columns[2][0] + 1, columns[0][0]));
}

bool Projection::is_orthogonal() const {
	return columns[2][3] == 0.0f;
}

Vector2 Projection::get_viewport_half_extents() const {
	const real_t w = -get_z_near() * columns[2][3] + columns[3][3];
	return Vector2(w / columns[0][0], w / columns[1][1]);
}

Vector2 Projection::get_far_plane_half_extents() const {
	const real_t w = -get_z_far() * columns[2][3] + columns[3][3];
	return Vector2(w / columns[0][0], w / columns[1][1]);
}

int Projection::get_pixels_per_meter(int for_pixel_width) const {
	const real_t width = 2 * get_viewport_half_extents().x;
	return int(for_pixel_width / width);
}

real_t Projection::get_lod_multiplier() const {
	return 2 / columns[0][0];
}

Vector3 Projection::xform(const Vector3 &v) const {
	const Vector4 result = xform(Vector4(v.x, v.y, v.z, 1));
	return Vector3(result.x, result.y, result.z) / result.w;
}

Vector4 Projection::xform(const Vector4 &v) const {
	return Vector4(columns[0][0] * v.x + columns[1][0] * v.y + columns[2][0] * v.z + columns[3][0] * v.w,
			columns[0][1] * v.x + columns[1][1] * v.y + columns[2][1] * v.z + columns[3][1] * v.w,
			columns[0][2] * v.x + columns[1][2] * v.y + columns[2][2] * v.z + columns[3][2] * v.w,
			columns[0][3] * v.x + columns[1][3] * v.y + columns[2][3] * v.z + columns[3][3] * v.w);
}

Vector4 Projection::xform_inv(const Vector4 &v) const {
	return Vector4(columns[0].dot(v), columns[1].dot(v), columns[2].dot(v), columns[3].dot(v));
}

Plane Projection::xform4(const Plane &plane) const {
	const Vector4 result = xform(Vector4(plane.normal.x, plane.normal.y, plane.normal.z, plane.d));
	return Plane(result.x, result.y, result.z, result.w);
}

bool Projection::is_same(const Projection &projection) const {
	for (int i = 0; i < 4; i++) {
		if (!columns[i].is_same(projection.columns[i])) {
			return false;
		}
	}
	return true;
}

bool Projection::operator==(const Projection &projection) const {
	for (int i = 0; i < 4; i++) {
		if (columns[i] != projection.columns[i]) {
			return false;
		}
	}
	return true;
}

Projection Projection::operator*(const Projection &projection) const {
	return Projection(xform(projection.columns[0]), xform(projection.columns[1]), xform(projection.columns[2]), xform(projection.columns[3]));
}

Projection::operator String() const {
	return String(Variant(*this));
}

} // namespace godot
