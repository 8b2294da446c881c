#include "math_case.hpp"
#include "math_tables.hpp"

using namespace godot;

namespace bindings_test {

static const MathCase rect2_cases[] = {
	MATH_1(Rect2, a.get_center()),
	MATH_1(Rect2, a.get_area()),
	MATH_1(Rect2, a.has_area()),
	MATH_1(Rect2, a.is_finite()),
	MATH_1(Rect2, a.abs()),
	MATH_2(Rect2, Rect2, a.intersects(b)),
	MATH_2(Rect2, Rect2, a.encloses(b)),
	MATH_2(Rect2, Rect2, a.intersection(b)),
	MATH_2(Rect2, Rect2, a.merge(b)),
	MATH_2(Rect2, Rect2, a.is_equal_approx(b)),
	MATH_2(Rect2, Rect2, a == b),
	MATH_2(Rect2, Vector2, a.has_point(b)),
	MATH_2(Rect2, Vector2, a.expand(b)),
	MATH_2(Rect2, Vector2, a.get_support(b)),
	MATH_2(Rect2, Float, a.grow(b)),
	MATH_5(Rect2, Float, Float, Float, Float, a.grow_individual(b, c, d, e)),
	MATH_SPELLED_2(Rect2, Positive, "a.grow_side(1, b)", a.grow_side(SIDE_TOP, b)),
	MATH_SPELLED_2(Rect2, RigidTransform2D, "a * b", b.xform_inv(a)),
};

static const MathCase rect2i_cases[] = {
	MATH_1(Rect2i, a.get_center()),
	MATH_1(Rect2i, a.get_area()),
	MATH_1(Rect2i, a.has_area()),
	MATH_1(Rect2i, a.abs()),
	MATH_2(Rect2i, Rect2i, a.intersects(b)),
	MATH_2(Rect2i, Rect2i, a.encloses(b)),
	MATH_2(Rect2i, Rect2i, a.intersection(b)),
	MATH_2(Rect2i, Rect2i, a.merge(b)),
	MATH_2(Rect2i, Rect2i, a == b),
	MATH_2(Rect2i, Vector2i, a.has_point(b)),
	MATH_2(Rect2i, Vector2i, a.expand(b)),
	MATH_2(Rect2i, Int, a.grow(b)),
	MATH_5(Rect2i, Int, Int, Int, Int, a.grow_individual(b, c, d, e)),
};

static const MathCase transform2d_cases[] = {
	MATH_1(Transform2D, a.affine_inverse()),
	MATH_1(Transform2D, a.get_rotation()),
	MATH_1(Transform2D, a.get_origin()),
	MATH_1(Transform2D, a.get_scale()),
	MATH_1(Transform2D, a.get_skew()),
	MATH_1(Transform2D, a.orthonormalized()),
	MATH_1(Transform2D, a.determinant()),
	MATH_1(Transform2D, a.is_conformal()),
	MATH_1(Transform2D, a.is_finite()),
	MATH_1(RigidTransform2D, a.inverse()),
	MATH_2(Transform2D, Angle, a.rotated(b)),
	MATH_2(Transform2D, Angle, a.rotated_local(b)),
	MATH_2(Transform2D, Vector2, a.scaled(b)),
	MATH_2(Transform2D, Vector2, a.scaled_local(b)),
	MATH_2(Transform2D, Vector2, a.translated(b)),
	MATH_2(Transform2D, Vector2, a.translated_local(b)),
	MATH_2(Transform2D, Vector2, a.basis_xform(b)),
	MATH_2(Transform2D, Vector2, a.basis_xform_inv(b)),
	MATH_2(Transform2D, Vector2, a.looking_at(b)),
	MATH_SPELLED_2(Transform2D, Vector2, "a * b", a.xform(b)),
	MATH_SPELLED_2(Transform2D, Rect2, "a * b", a.xform(b)),
	MATH_2(Transform2D, Transform2D, a *b),
	MATH_2(Transform2D, Float, a *b),
	MATH_2(Transform2D, Transform2D, a == b),
	MATH_2(Transform2D, Transform2D, a.is_equal_approx(b)),
	MATH_3(Transform2D, Transform2D, Fraction, a.interpolate_with(b, c)),
};

static const MathCase color_cases[] = {
	MATH_1(Color, a.to_argb32()),
	MATH_1(Color, a.to_abgr32()),
	MATH_1(Color, a.to_rgba32()),
	MATH_1(Color, a.to_argb64()),
	MATH_1(Color, a.to_abgr64()),
	MATH_1(Color, a.to_rgba64()),
	MATH_1(Color, a.to_html()),
	MATH_1(Color, a.inverted()),
	MATH_1(Color, a.get_luminance()),
	MATH_1(Color, a.srgb_to_linear()),
	MATH_1(Color, a.linear_to_srgb()),
	MATH_1(Color, a.clamp()),
	MATH_1(Color, -a),
	MATH_2(Color, Color, a + b),
	MATH_2(Color, Color, a - b),
	MATH_2(Color, Color, a *b),
	MATH_2(Color, Color, a / b),
	MATH_2(Color, Color, a == b),
	MATH_2(Color, Float, a *b),
	MATH_2(Color, Positive, a / b),
	MATH_2(Color, Color, a.blend(b)),
	MATH_2(Color, Color, a.is_equal_approx(b)),
	MATH_2(Color, Fraction, a.lightened(b)),
	MATH_2(Color, Fraction, a.darkened(b)),
	MATH_3(Color, Color, Color, a.clamp(b, c)),
	MATH_3(Color, Color, Fraction, a.lerp(b, c)),
	MATH_SPELLED_1(Color, "a.h", a.get_h()),
	MATH_SPELLED_1(Color, "a.s", a.get_s()),
	MATH_SPELLED_1(Color, "a.v", a.get_v()),
};

void append_flat(LocalVector<const MathCase *> &cases) {
	append(rect2_cases, cases);
	append(rect2i_cases, cases);
	append(transform2d_cases, cases);
	append(color_cases, cases);
}

} // namespace bindings_test
