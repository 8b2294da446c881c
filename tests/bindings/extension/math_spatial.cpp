#include "math_case.hpp"
#include "math_tables.hpp"

using namespace godot;

namespace bindings_test {

static const MathCase plane_cases[] = {
	MATH_1(Plane, a.normalized()),
	MATH_1(Plane, a.get_center()),
	MATH_1(Plane, a.is_finite()),
	MATH_1(Plane, -a),
	MATH_2(Plane, Vector3, a.is_point_over(b)),
	MATH_2(Plane, Vector3, a.distance_to(b)),
	MATH_2(Plane, Vector3, a.has_point(b)),
	MATH_2(Plane, Vector3, a.project(b)),
	MATH_2(Plane, Plane, a == b),
	MATH_2(Plane, Plane, a.is_equal_approx(b)),
	MATH_SPELLED_3(Plane, Plane, Plane, "a.intersect_3(b, c)", a.intersect_3_bind(b, c)),
	MATH_SPELLED_3(Plane, Vector3, Vector3, "a.intersects_ray(b, c)", a.intersects_ray_bind(b, c)),
	MATH_SPELLED_3(Plane, Vector3, Vector3, "a.intersects_segment(b, c)", a.intersects_segment_bind(b, c)),
};

static const MathCase quaternion_cases[] = {
	MATH_1(Quaternion, a.length()),
	MATH_1(Quaternion, a.length_squared()),
	MATH_1(Quaternion, a.normalized()),
	MATH_1(Quaternion, a.is_normalized()),
	MATH_1(Quaternion, a.is_finite()),
	MATH_1(UnitQuaternion, a.inverse()),
	MATH_1(UnitQuaternion, a.log()),
	MATH_1(UnitQuaternion, a.exp()),
	MATH_1(UnitQuaternion, a.get_euler()),
	MATH_1(UnitQuaternion, a.get_axis()),
	MATH_1(UnitQuaternion, a.get_angle()),
	MATH_1(Quaternion, -a),
	MATH_2(Quaternion, Quaternion, a + b),
	MATH_2(Quaternion, Quaternion, a - b),
	MATH_2(Quaternion, Quaternion, a *b),
	MATH_2(Quaternion, Quaternion, a == b),
	MATH_2(Quaternion, Float, a *b),
	MATH_2(Quaternion, Positive, a / b),
	MATH_2(Quaternion, Quaternion, a.dot(b)),
	MATH_2(Quaternion, Quaternion, a.is_equal_approx(b)),
	MATH_2(UnitQuaternion, UnitQuaternion, a.angle_to(b)),
	MATH_SPELLED_2(UnitQuaternion, Vector3, "a * b", a.xform(b)),
	MATH_3(UnitQuaternion, UnitQuaternion, Fraction, a.slerp(b, c)),
	MATH_3(UnitQuaternion, UnitQuaternion, Fraction, a.slerpni(b, c)),
	MATH_5(UnitQuaternion, UnitQuaternion, UnitQuaternion, UnitQuaternion, Fraction, a.spherical_cubic_interpolate(b, c, d, e)),
};

static const MathCase aabb_cases[] = {
	MATH_1(AABB, a.abs()),
	MATH_1(AABB, a.get_center()),
	MATH_1(AABB, a.get_volume()),
	MATH_1(AABB, a.has_volume()),
	MATH_1(AABB, a.has_surface()),
	MATH_1(AABB, a.is_finite()),
	MATH_1(AABB, a.get_longest_axis()),
	MATH_1(AABB, a.get_longest_axis_index()),
	MATH_1(AABB, a.get_longest_axis_size()),
	MATH_1(AABB, a.get_shortest_axis()),
	MATH_1(AABB, a.get_shortest_axis_index()),
	MATH_1(AABB, a.get_shortest_axis_size()),
	MATH_2(AABB, AABB, a.intersects(b)),
	MATH_2(AABB, AABB, a.encloses(b)),
	MATH_2(AABB, AABB, a.intersection(b)),
	MATH_2(AABB, AABB, a.merge(b)),
	MATH_2(AABB, AABB, a.is_equal_approx(b)),
	MATH_2(AABB, AABB, a == b),
	MATH_2(AABB, Vector3, a.has_point(b)),
	MATH_2(AABB, Vector3, a.expand(b)),
	MATH_2(AABB, Vector3, a.get_support(b)),
	MATH_2(AABB, Float, a.grow(b)),
	MATH_2(AABB, Plane, a.intersects_plane(b)),
	MATH_SPELLED_1(AABB, "a.get_endpoint(5)", a.get_endpoint(5)),
	MATH_SPELLED_3(AABB, Vector3, Vector3, "a.intersects_segment(b, c)", a.intersects_segment_bind(b, c)),
	MATH_SPELLED_3(AABB, Vector3, Vector3, "a.intersects_ray(b, c)", a.intersects_ray_bind(b, c)),
};

static const MathCase basis_cases[] = {
	MATH_1(Basis, a.inverse()),
	MATH_1(Basis, a.transposed()),
	MATH_1(Basis, a.orthonormalized()),
	MATH_1(Basis, a.determinant()),
	MATH_1(Basis, a.get_scale()),
	MATH_1(Basis, a.is_conformal()),
	MATH_1(Basis, a.is_finite()),
	MATH_1(Basis, a.get_rotation_quaternion()),
	MATH_1(Rotation, a.get_euler()),
	MATH_2(Basis, Vector3, a.scaled(b)),
	MATH_2(Basis, Vector3, a.scaled_local(b)),
	MATH_2(Basis, Vector3, a.tdotx(b)),
	MATH_2(Basis, Vector3, a.tdoty(b)),
	MATH_2(Basis, Vector3, a.tdotz(b)),
	MATH_SPELLED_2(Basis, Vector3, "a * b", a.xform(b)),
	MATH_2(Basis, Basis, a *b),
	MATH_2(Basis, Float, a *b),
	MATH_2(Basis, Basis, a == b),
	MATH_2(Basis, Basis, a.is_equal_approx(b)),
	MATH_3(Basis, UnitVector3, Angle, a.rotated(b, c)),
	MATH_3(Rotation, Rotation, Fraction, a.slerp(b, c)),
};

static const MathCase transform3d_cases[] = {
	MATH_1(Transform3D, a.affine_inverse()),
	MATH_1(Transform3D, a.orthonormalized()),
	MATH_1(Transform3D, a.is_finite()),
	MATH_1(RigidTransform3D, a.inverse()),
	MATH_2(Transform3D, Vector3, a.scaled(b)),
	MATH_2(Transform3D, Vector3, a.scaled_local(b)),
	MATH_2(Transform3D, Vector3, a.translated(b)),
	MATH_2(Transform3D, Vector3, a.translated_local(b)),
	MATH_2(Transform3D, Vector3, a.looking_at(b)),
	MATH_3(Transform3D, UnitVector3, Angle, a.rotated(b, c)),
	MATH_3(Transform3D, UnitVector3, Angle, a.rotated_local(b, c)),
	MATH_SPELLED_2(Transform3D, Vector3, "a * b", a.xform(b)),
	MATH_SPELLED_2(Transform3D, Plane, "a * b", a.xform(b)),
	MATH_SPELLED_2(Transform3D, AABB, "a * b", a.xform(b)),
	MATH_2(Transform3D, Transform3D, a *b),
	MATH_2(Transform3D, Float, a *b),
	MATH_2(Transform3D, Transform3D, a == b),
	MATH_2(Transform3D, Transform3D, a.is_equal_approx(b)),
	MATH_3(Transform3D, Transform3D, Fraction, a.interpolate_with(b, c)),
};

static const MathCase projection_cases[] = {
	MATH_1(Projection, a.determinant()),
	MATH_1(Projection, a.flipped_y()),
	MATH_1(Projection, a.get_z_far()),
	MATH_1(Projection, a.get_z_near()),
	MATH_1(Projection, a.get_aspect()),
	MATH_1(Projection, a.get_fov()),
	MATH_1(Projection, a.is_orthogonal()),
	MATH_1(Projection, a.get_viewport_half_extents()),
	MATH_1(Projection, a.get_far_plane_half_extents()),
	MATH_1(Projection, a.inverse()),
	MATH_1(Projection, a.get_lod_multiplier()),
	MATH_2(Projection, Positive, a.perspective_znear_adjusted(b)),
	MATH_2(Projection, Vector2, a.jitter_offseted(b)),
	MATH_2(Projection, Projection, a *b),
	MATH_SPELLED_2(Projection, Vector4, "a * b", a.xform(b)),
	MATH_SPELLED_2(Vector4, Projection, "a * b", b.xform_inv(a)),
	MATH_SPELLED_1(Projection, "a.get_projection_plane(2)", a.get_projection_plane(Projection::PLANE_LEFT)),
};

void append_spatial(LocalVector<const MathCase *> &cases) {
	append(plane_cases, cases);
	append(quaternion_cases, cases);
	append(aabb_cases, cases);
	append(basis_cases, cases);
	append(transform3d_cases, cases);
	append(projection_cases, cases);
}

} // namespace bindings_test
