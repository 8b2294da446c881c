#include <godot_cpp/variant/basis.hpp>
#include <godot_cpp/variant/quaternion.hpp>

#include "math_checks.hpp"

namespace godot {

namespace {

// The arms of a curve, each turned to the side of its neighbour that is the shorter way.
struct CurvePoints {
	Quaternion from;
	Quaternion to;
	Quaternion pre;
	Quaternion post;

	CurvePoints(const Quaternion &a, const Quaternion &b, const Quaternion &pre_a, const Quaternion &post_b) :
			from(Basis(a).get_rotation_quaternion()), to(Basis(b).get_rotation_quaternion()), pre(Basis(pre_a).get_rotation_quaternion()),
			post(Basis(post_b).get_rotation_quaternion()) {
		if (std::signbit(from.dot(pre))) {
			pre = -pre;
		}
		const bool to_is_flipped = std::signbit(from.dot(to));
		if (to_is_flipped) {
			to = -to;
		}
		if (to_is_flipped ? to.dot(post) <= 0 : std::signbit(to.dot(post))) {
			post = -post;
		}
	}

	// Interpolates the four points as logarithms seen from `origin`.
	template <typename F>
	Quaternion seen_from(const Quaternion &origin, bool origin_is_from, const F &interpolate) const {
		const Quaternion back = origin.inverse();
		const Quaternion zero(0, 0, 0, 0);
		const Quaternion log_from = origin_is_from ? zero : (back * from).log();
		const Quaternion log_to = origin_is_from ? (back * to).log() : zero;
		const Quaternion log_pre = (back * pre).log();
		const Quaternion log_post = (back * post).log();
		Quaternion log(0, 0, 0, 0);
		for (int i = 0; i < 3; i++) {
			log[i] = interpolate(log_from[i], log_to[i], log_pre[i], log_post[i]);
		}
		return origin * log.exp();
	}

	template <typename F>
	Quaternion interpolate(real_t weight, const F &function) const {
		return seen_from(from, true, function).slerp(seen_from(to, false, function), weight);
	}
};

} // namespace

Quaternion::Quaternion(const Vector3 &axis, real_t angle) : Quaternion(0, 0, 0, 0) {
#ifdef MATH_CHECKS
	ERR_FAIL_COND_MSG(!axis.is_normalized(), String("The axis Vector3 ") + String(axis) + String(" must be normalized."));
#endif
	const real_t length = axis.length();
	if (length == 0) {
		return;
	}
	const real_t share = Math::sin(angle * 0.5f) / length;
	*this = Quaternion(axis.x * share, axis.y * share, axis.z * share, Math::cos(angle * 0.5f));
}

Quaternion::Quaternion(const Vector3 &arc_from, const Vector3 &arc_to) : Quaternion() {
#ifdef MATH_CHECKS
	ERR_FAIL_COND_MSG(arc_from.is_zero_approx() || arc_to.is_zero_approx(), "The vectors must not be zero.");
#endif
	const Vector3 from = arc_from.normalized();
	const Vector3 to = arc_to.normalized();
	const real_t d = from.dot(to);
	if (Math::abs(d) > 1.0f - real_t(CMP_EPSILON)) {
		if (d >= 0) {
			return;
		}
		// Half a turn: any axis across will do.
		const Vector3 axis = from.get_any_perpendicular();
		*this = Quaternion(axis.x, axis.y, axis.z, 0);
	} else {
		const Vector3 across = from.cross(to);
		const real_t s = Math::sqrt((1.0f + d) * 2.0f);
		const real_t share = 1.0f / s;
		*this = Quaternion(across.x * share, across.y * share, across.z * share, s * 0.5f);
	}
	normalize();
}

bool Quaternion::is_equal_approx(const Quaternion &to) const {
	return Math::is_equal_approx(x, to.x) && Math::is_equal_approx(y, to.y) && Math::is_equal_approx(z, to.z) && Math::is_equal_approx(w, to.w);
}

bool Quaternion::is_same(const Quaternion &to) const {
	return Math::is_same(x, to.x) && Math::is_same(y, to.y) && Math::is_same(z, to.z) && Math::is_same(w, to.w);
}

Quaternion Quaternion::inverse() const {
	CHECK_NORMALIZED(*this, "quaternion", Quaternion());
	return Quaternion(-x, -y, -z, w);
}

Quaternion Quaternion::log() const {
	const Vector3 v = get_axis() * get_angle();
	return Quaternion(v.x, v.y, v.z, 0);
}

Quaternion Quaternion::exp() const {
	const Vector3 v(x, y, z);
	const real_t angle = v.length();
	const Vector3 axis = v.normalized();
	if (angle < real_t(CMP_EPSILON) || !axis.is_normalized()) {
		return Quaternion();
	}
	return Quaternion(axis, angle);
}

real_t Quaternion::angle_to(const Quaternion &to) const {
	const real_t d = dot(to);
	// acos turns rounding above 1 into 0.
	return Math::acos(d * d * 2 - 1);
}

Vector3 Quaternion::get_euler(EulerOrder order) const {
	CHECK_NORMALIZED(*this, "quaternion", Vector3());
	return Basis(*this).get_euler(order);
}

Quaternion Quaternion::from_euler(const Vector3 &euler) {
	const real_t half_y = euler.y * 0.5f;
	const real_t half_x = euler.x * 0.5f;
	const real_t half_z = euler.z * 0.5f;
	const real_t cos_y = Math::cos(half_y), sin_y = Math::sin(half_y);
	const real_t cos_x = Math::cos(half_x), sin_x = Math::sin(half_x);
	const real_t cos_z = Math::cos(half_z), sin_z = Math::sin(half_z);
	return Quaternion(sin_y * cos_x * sin_z + cos_y * sin_x * cos_z, sin_y * cos_x * cos_z - cos_y * sin_x * sin_z,
			-sin_y * sin_x * cos_z + cos_y * cos_x * sin_z, sin_y * sin_x * sin_z + cos_y * cos_x * cos_z);
}

Vector3 Quaternion::get_axis() const {
	if (Math::abs(w) > 1 - real_t(CMP_EPSILON)) {
		return Vector3(x, y, z);
	}
	const real_t share = real_t(1) / Math::sqrt(1 - w * w);
	return Vector3(x * share, y * share, z * share);
}

void Quaternion::get_axis_angle(Vector3 &axis, real_t &angle) const {
	angle = 2 * Math::acos(w);
	const real_t share = real_t(1) / Math::sqrt(1 - w * w);
	axis = Vector3(x * share, y * share, z * share);
}

Quaternion Quaternion::slerp(const Quaternion &to, real_t weight) const {
	CHECK_NORMALIZED(*this, "start quaternion", Quaternion());
	CHECK_NORMALIZED(to, "end quaternion", Quaternion());
	// Of the two ways round, the shorter one.
	real_t cosine = dot(to);
	const Quaternion end = cosine < 0 ? -to : to;
	cosine = Math::abs(cosine);
	real_t share_from = 1 - weight;
	real_t share_to = weight;
	if (1 - cosine > real_t(CMP_EPSILON)) {
		const real_t angle = Math::acos(cosine);
		const real_t sine = Math::sin(angle);
		// In double, as the engine has it.
		share_from = real_t(Math::sin((1.0 - weight) * angle) / sine);
		share_to = Math::sin(weight * angle) / sine;
	}
	return Quaternion(
			share_from * x + share_to * end.x, share_from * y + share_to * end.y, share_from * z + share_to * end.z, share_from * w + share_to * end.w);
}

Quaternion Quaternion::slerpni(const Quaternion &to, real_t weight) const {
	CHECK_NORMALIZED(*this, "start quaternion", Quaternion());
	CHECK_NORMALIZED(to, "end quaternion", Quaternion());
	const real_t cosine = dot(to);
	if (Math::abs(cosine) > 0.9999f) {
		return *this;
	}
	const real_t angle = Math::acos(cosine);
	const real_t share = 1.0f / Math::sin(angle);
	const real_t share_to = Math::sin(weight * angle) * share;
	const real_t share_from = Math::sin((1.0f - weight) * angle) * share;
	return Quaternion(share_from * x + share_to * to.x, share_from * y + share_to * to.y, share_from * z + share_to * to.z, share_from * w + share_to * to.w);
}

Quaternion Quaternion::spherical_cubic_interpolate(const Quaternion &b, const Quaternion &pre_a, const Quaternion &post_b, real_t weight) const {
	CHECK_NORMALIZED(*this, "start quaternion", Quaternion());
	CHECK_NORMALIZED(b, "end quaternion", Quaternion());
	return CurvePoints(*this, b, pre_a, post_b).interpolate(weight, [weight](real_t from, real_t to, real_t pre, real_t post) {
		return Math::cubic_interpolate(from, to, pre, post, weight);
	});
}

Quaternion Quaternion::spherical_cubic_interpolate_in_time(
		const Quaternion &b, const Quaternion &pre_a, const Quaternion &post_b, real_t weight, real_t b_t, real_t pre_a_t, real_t post_b_t) const {
	CHECK_NORMALIZED(*this, "start quaternion", Quaternion());
	CHECK_NORMALIZED(b, "end quaternion", Quaternion());
	return CurvePoints(*this, b, pre_a, post_b).interpolate(weight, [=](real_t from, real_t to, real_t pre, real_t post) {
		return Math::cubic_interpolate_in_time(from, to, pre, post, weight, b_t, pre_a_t, post_b_t);
	});
}

Vector3 Quaternion::xform(const Vector3 &v) const {
	CHECK_NORMALIZED(*this, "quaternion", v);
	const Vector3 u(x, y, z);
	const Vector3 uv = u.cross(v);
	return v + ((uv * w) + u.cross(uv)) * real_t(2);
}

Quaternion::operator String() const {
	return String(Variant(*this));
}

} // namespace godot
