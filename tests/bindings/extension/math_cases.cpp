#include "math_cases.hpp"

#include <godot_cpp/core/math.hpp>

#include <iterator>

using namespace godot;

namespace bindings_test {

namespace {

// Types of arguments that want a special range.
using Number = double;
using Float = float;
using Fraction = float;
using Positive = float;
using Angle = float;
using Count = int32_t;
using UnitVector2 = Vector2;
using UnitVector3 = Vector3;
using CountVector2i = Vector2i;
using CountVector3i = Vector3i;
using UnitQuaternion = Quaternion;
using Rotation = Basis;
using RigidTransform2D = Transform2D;
using RigidTransform3D = Transform3D;

} // namespace

#define MATH_CASE(m_types, m_takes, m_script, m_expression)                                                                                                    \
	{                                                                                                                                                          \
		m_script, m_types, [](const Variant *arguments) -> Variant { m_takes return m_expression; }                                                            \
	}
#define TAKE(m_type, m_name, m_index) const m_type m_name = arguments[m_index];
#define TAKE_2(m_a, m_b) TAKE(m_a, a, 0) TAKE(m_b, b, 1)
#define TAKE_3(m_a, m_b, m_c) TAKE_2(m_a, m_b) TAKE(m_c, c, 2)
#define TAKE_5(m_a, m_b, m_c, m_d, m_e) TAKE_3(m_a, m_b, m_c) TAKE(m_d, d, 3) TAKE(m_e, e, 4)

// The SPELLED ones are for what C++ writes in another way than scripts.
#define SPELLED_1(m_a, m_script, m_expression) MATH_CASE(#m_a, TAKE(m_a, a, 0), m_script, m_expression)
#define SPELLED_2(m_a, m_b, m_script, m_expression) MATH_CASE(#m_a "," #m_b, TAKE_2(m_a, m_b), m_script, m_expression)
#define SPELLED_3(m_a, m_b, m_c, m_script, m_expression) MATH_CASE(#m_a "," #m_b "," #m_c, TAKE_3(m_a, m_b, m_c), m_script, m_expression)
#define SPELLED_5(m_a, m_b, m_c, m_d, m_e, m_script, m_expression)                                                                                             \
	MATH_CASE(#m_a "," #m_b "," #m_c "," #m_d "," #m_e, TAKE_5(m_a, m_b, m_c, m_d, m_e), m_script, m_expression)
#define MATH_1(m_a, m_expression) SPELLED_1(m_a, #m_expression, m_expression)
#define MATH_2(m_a, m_b, m_expression) SPELLED_2(m_a, m_b, #m_expression, m_expression)
#define MATH_3(m_a, m_b, m_c, m_expression) SPELLED_3(m_a, m_b, m_c, #m_expression, m_expression)
#define MATH_5(m_a, m_b, m_c, m_d, m_e, m_expression) SPELLED_5(m_a, m_b, m_c, m_d, m_e, #m_expression, m_expression)

// clang-format off
// What several types have in common.
#define ARITHMETIC(T) MATH_1(T, -a), MATH_2(T, T, a + b), MATH_2(T, T, a - b), MATH_2(T, T, a * b)
#define ORDERED(T) MATH_2(T, T, a < b), MATH_2(T, T, a <= b), MATH_2(T, T, a > b), MATH_2(T, T, a >= b), MATH_2(T, T, a.min(b)), MATH_2(T, T, a.max(b)), \
	MATH_3(T, T, T, a.clamp(b, c)), MATH_1(T, a.abs()), MATH_1(T, a.sign()), MATH_1(T, a.max_axis_index()), MATH_1(T, a.min_axis_index())
#define COMPARED(T) MATH_2(T, T, a == b), MATH_2(T, T, a.is_equal_approx(b)), MATH_1(T, a.is_finite())
#define VECTOR(T) ARITHMETIC(T), ORDERED(T), COMPARED(T), \
	MATH_1(T, a.length()), MATH_1(T, a.length_squared()), MATH_1(T, a.normalized()), MATH_1(T, a.is_normalized()), MATH_1(T, a.is_zero_approx()), \
	MATH_1(T, a.floor()), MATH_1(T, a.ceil()), MATH_1(T, a.round()), MATH_2(T, T, a / b), MATH_2(T, Float, a * b), MATH_2(T, Float, a / b), \
	MATH_2(T, T, a.dot(b)), MATH_2(T, T, a.cross(b)), MATH_2(T, T, a.angle_to(b)), MATH_2(T, T, a.project(b)), \
	MATH_2(T, T, a.distance_to(b)), MATH_2(T, T, a.distance_squared_to(b)), MATH_2(T, T, a.direction_to(b)), \
	MATH_2(T, T, a.posmodv(b)), MATH_2(T, Float, a.posmod(b)), MATH_2(T, T, a.snapped(b)), MATH_2(T, Positive, a.limit_length(b)), \
	MATH_3(T, T, Fraction, a.lerp(b, c)), MATH_3(T, T, Fraction, a.slerp(b, c)), MATH_3(T, T, Positive, a.move_toward(b, c)), \
	MATH_5(T, T, T, T, Fraction, a.cubic_interpolate(b, c, d, e)), MATH_5(T, T, T, T, Fraction, a.bezier_interpolate(b, c, d, e)), \
	MATH_2(T, Unit##T, a.slide(b)), MATH_2(T, Unit##T, a.bounce(b)), MATH_2(T, Unit##T, a.reflect(b))
#define WHOLE_VECTOR(T) ARITHMETIC(T), ORDERED(T), MATH_2(T, T, a == b), MATH_1(T, a.length()), MATH_2(T, T, a.distance_to(b)), \
	MATH_2(T, Count##T, a / b), MATH_2(T, Count##T, a % b), MATH_2(T, Count##T, a.snapped(b)), MATH_2(T, Count, a / b), MATH_2(T, Count, a % b)
#define BOX(T, V) COMPARED(T), MATH_1(T, a.abs()), MATH_1(T, a.get_center()), MATH_2(T, T, a.intersects(b)), MATH_2(T, T, a.encloses(b)), \
	MATH_2(T, T, a.intersection(b)), MATH_2(T, T, a.merge(b)), MATH_2(T, V, a.has_point(b)), MATH_2(T, V, a.expand(b)), MATH_2(T, Float, a.grow(b))
#define TRANSFORM(T, V) COMPARED(T), MATH_1(T, a.affine_inverse()), MATH_1(T, a.orthonormalized()), MATH_1(Rigid##T, a.inverse()), \
	MATH_2(T, V, a.scaled(b)), MATH_2(T, V, a.scaled_local(b)), MATH_2(T, V, a.translated(b)), MATH_2(T, V, a.translated_local(b)), MATH_2(T, V, a.looking_at(b)), \
	MATH_2(T, T, a * b), MATH_2(T, Float, a * b), SPELLED_2(T, V, "a * b", a.xform(b)), SPELLED_2(V, Rigid##T, "a * b", b.xform_inv(a)), \
	MATH_3(T, T, Fraction, a.interpolate_with(b, c))

const MathCase MATH_CASES[] = {
	SPELLED_3(Number, Number, Number, "lerpf(a, b, c)", Math::lerp(a, b, c)),
	SPELLED_3(Number, Number, Number, "inverse_lerp(a, b + 30.0, c)", Math::inverse_lerp(a, b + 30.0, c)),
	SPELLED_3(Number, Number, Number, "move_toward(a, b, c)", Math::move_toward(a, b, c)),
	SPELLED_3(Number, Number, Number, "smoothstep(a, b, c)", Math::smoothstep(a, b, c)),
	SPELLED_3(Number, Number, Number, "lerp_angle(a, b, c)", Math::lerp_angle(a, b, c)),
	SPELLED_3(Number, Number, Number, "rotate_toward(a, b, c)", Math::rotate_toward(a, b, c)),
	SPELLED_2(Number, Number, "wrapf(a, b, b + 5.0)", Math::wrapf(a, b, b + 5.0)),
	SPELLED_2(Number, Number, "angle_difference(a, b)", Math::angle_difference(a, b)),
	SPELLED_2(Number, Number, "fposmod(a, b)", Math::fposmod(a, b)),
	SPELLED_2(Number, Number, "pingpong(a, b)", Math::pingpong(a, b)),
	SPELLED_2(Number, Number, "snappedf(a, b)", Math::snapped(a, b)),
	SPELLED_2(Fraction, Number, "ease(a, b)", Math::ease(double(a), b)),
	SPELLED_5(Number, Number, Number, Number, Number, "cubic_interpolate(a, b, c, d, e)", Math::cubic_interpolate(a, b, c, d, e)),
	SPELLED_5(Number, Number, Number, Number, Number, "bezier_interpolate(a, b, c, d, e)", Math::bezier_interpolate(a, b, c, d, e)),

	VECTOR(Vector2), MATH_1(Vector2, a.angle()), MATH_1(Vector2, a.aspect()), MATH_1(Vector2, a.orthogonal()),
	MATH_2(Vector2, Vector2, a.angle_to_point(b)), MATH_2(Vector2, Angle, a.rotated(b)),
	VECTOR(Vector3), MATH_1(Vector3, a.inverse()), MATH_3(Vector3, UnitVector3, Angle, a.rotated(b, c)),
	MATH_3(Vector3, Vector3, UnitVector3, a.signed_angle_to(b, c)),
	SPELLED_2(Vector3, UnitQuaternion, "a * b", b.xform_inv(a)), SPELLED_2(Vector3, Rotation, "a * b", b.xform_inv(a)),
	WHOLE_VECTOR(Vector2i), WHOLE_VECTOR(Vector3i),

	BOX(Rect2, Vector2), MATH_1(Rect2, a.get_area()), MATH_1(Rect2, a.has_area()), MATH_2(Rect2, Vector2, a.get_support(b)),
	MATH_5(Rect2, Float, Float, Float, Float, a.grow_individual(b, c, d, e)), SPELLED_2(Rect2, RigidTransform2D, "a * b", b.xform_inv(a)),
	BOX(AABB, Vector3), MATH_1(AABB, a.get_volume()), MATH_2(AABB, Vector3, a.get_support(b)), SPELLED_1(AABB, "a.get_endpoint(5)", a.get_endpoint(5)),
	SPELLED_3(AABB, Vector3, Vector3, "a.intersects_segment(b, c)", a.intersects_segment_bind(b, c)),
	SPELLED_3(AABB, Vector3, Vector3, "a.intersects_ray(b, c)", a.intersects_ray_bind(b, c)),
	COMPARED(Plane), MATH_1(Plane, a.normalized()), MATH_2(Plane, Vector3, a.distance_to(b)), MATH_2(Plane, Vector3, a.project(b)),
	SPELLED_3(Plane, Vector3, Vector3, "a.intersects_ray(b, c)", a.intersects_ray_bind(b, c)),
	SPELLED_3(Plane, Vector3, Vector3, "a.intersects_segment(b, c)", a.intersects_segment_bind(b, c)),

	TRANSFORM(Transform2D, Vector2), MATH_1(Transform2D, a.get_rotation()), MATH_1(Transform2D, a.get_scale()), MATH_1(Transform2D, a.get_skew()),
	MATH_1(Transform2D, a.determinant()), MATH_2(Transform2D, Angle, a.rotated(b)), MATH_2(Transform2D, Angle, a.rotated_local(b)),
	MATH_2(Transform2D, Vector2, a.basis_xform(b)), MATH_2(Transform2D, Vector2, a.basis_xform_inv(b)), SPELLED_2(Transform2D, Rect2, "a * b", a.xform(b)),
	TRANSFORM(Transform3D, Vector3), MATH_3(Transform3D, UnitVector3, Angle, a.rotated(b, c)), MATH_3(Transform3D, UnitVector3, Angle, a.rotated_local(b, c)),
	SPELLED_2(Transform3D, AABB, "a * b", a.xform(b)),
	COMPARED(Basis), MATH_1(Basis, a.inverse()), MATH_1(Basis, a.transposed()), MATH_1(Basis, a.orthonormalized()), MATH_1(Basis, a.determinant()),
	MATH_1(Basis, a.get_scale()), MATH_1(Basis, a.get_rotation_quaternion()), MATH_1(Rotation, a.get_euler()), MATH_2(Basis, Basis, a * b),
	MATH_2(Basis, Vector3, a.scaled(b)), MATH_2(Basis, Vector3, a.scaled_local(b)), SPELLED_2(Basis, Vector3, "a * b", a.xform(b)),
	MATH_3(Basis, UnitVector3, Angle, a.rotated(b, c)), MATH_3(Rotation, Rotation, Fraction, a.slerp(b, c)),
	ARITHMETIC(Quaternion), COMPARED(Quaternion), MATH_1(Quaternion, a.length()), MATH_1(Quaternion, a.normalized()), MATH_2(Quaternion, Quaternion, a.dot(b)),
	MATH_1(UnitQuaternion, a.inverse()), MATH_1(UnitQuaternion, a.get_euler()), MATH_1(UnitQuaternion, a.get_axis()), MATH_1(UnitQuaternion, a.get_angle()),
	MATH_2(UnitQuaternion, UnitQuaternion, a.angle_to(b)), SPELLED_2(UnitQuaternion, Vector3, "a * b", a.xform(b)),
	MATH_3(UnitQuaternion, UnitQuaternion, Fraction, a.slerp(b, c)),

	ARITHMETIC(Color), MATH_2(Color, Color, a == b), MATH_2(Color, Color, a.is_equal_approx(b)), MATH_1(Color, a.to_rgba32()), MATH_1(Color, a.to_html()), MATH_1(Color, a.inverted()), MATH_1(Color, a.get_luminance()),
	MATH_1(Color, a.srgb_to_linear()), MATH_1(Color, a.linear_to_srgb()), MATH_2(Color, Color, a / b), MATH_2(Color, Float, a * b),
	MATH_2(Color, Color, a.blend(b)), MATH_2(Color, Fraction, a.lightened(b)), MATH_2(Color, Fraction, a.darkened(b)),
	MATH_3(Color, Color, Color, a.clamp(b, c)), MATH_3(Color, Color, Fraction, a.lerp(b, c)),
	SPELLED_1(Color, "a.h", a.get_h()), SPELLED_1(Color, "a.s", a.get_s()), SPELLED_1(Color, "a.v", a.get_v()),
};
// clang-format on

const int64_t MATH_CASE_COUNT = std::size(MATH_CASES);

} // namespace bindings_test
