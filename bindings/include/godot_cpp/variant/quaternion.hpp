// A rotation in 3D that can be interpolated. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_QUATERNION_HPP
#define GODOT_CPP_VARIANT_QUATERNION_HPP

#include <godot_cpp/classes/global_constants.hpp>
#include <godot_cpp/variant/vector3.hpp>

namespace godot {

struct [[nodiscard]] Quaternion {
	union {
		_UNNAMED_MEMBERS_ struct {
			real_t x;
			real_t y;
			real_t z;
			real_t w;
		};
		real_t components[4];
	};

	constexpr Quaternion() : x(0), y(0), z(0), w(1) {}
	constexpr Quaternion(real_t x_value, real_t y_value, real_t z_value, real_t w_value) : x(x_value), y(y_value), z(z_value), w(w_value) {}
	Quaternion(const Vector3 &axis, real_t angle);
	// The shortest way from one direction to another.
	Quaternion(const Vector3 &arc_from, const Vector3 &arc_to);

	_FORCE_INLINE_ real_t &operator[](int index) { return components[index]; }
	_FORCE_INLINE_ const real_t &operator[](int index) const { return components[index]; }

	constexpr real_t dot(const Quaternion &with) const { return x * with.x + y * with.y + z * with.z + w * with.w; }
	constexpr real_t length_squared() const { return dot(*this); }
	real_t length() const { return Math::sqrt(length_squared()); }
	void normalize() { *this /= length(); }
	Quaternion normalized() const { return *this / length(); }
	bool is_normalized() const { return Math::is_equal_approx(length_squared(), real_t(1), real_t(UNIT_EPSILON)); }
	bool is_equal_approx(const Quaternion &to) const;
	bool is_same(const Quaternion &to) const;
	bool is_finite() const { return Math::is_finite(x) && Math::is_finite(y) && Math::is_finite(z) && Math::is_finite(w); }
	Quaternion inverse() const;
	Quaternion log() const;
	Quaternion exp() const;
	real_t angle_to(const Quaternion &to) const;

	Vector3 get_euler(EulerOrder order = EULER_ORDER_YXZ) const;
	static Quaternion from_euler(const Vector3 &euler);
	Vector3 get_axis() const;
	real_t get_angle() const { return 2 * Math::acos(w); }
	void get_axis_angle(Vector3 &axis, real_t &angle) const;

	Quaternion slerp(const Quaternion &to, real_t weight) const;
	Quaternion slerpni(const Quaternion &to, real_t weight) const;
	Quaternion spherical_cubic_interpolate(const Quaternion &b, const Quaternion &pre_a, const Quaternion &post_b, real_t weight) const;
	Quaternion spherical_cubic_interpolate_in_time(
			const Quaternion &b, const Quaternion &pre_a, const Quaternion &post_b, real_t weight, real_t b_t, real_t pre_a_t, real_t post_b_t) const;

	Vector3 xform(const Vector3 &v) const;
	Vector3 xform_inv(const Vector3 &v) const { return inverse().xform(v); }

	void operator*=(const Quaternion &q) { *this = *this * q; }
	constexpr Quaternion operator*(const Quaternion &q) const {
		return Quaternion(w * q.x + x * q.w + y * q.z - z * q.y, w * q.y + y * q.w + z * q.x - x * q.z, w * q.z + z * q.w + x * q.y - y * q.x,
				w * q.w - x * q.x - y * q.y - z * q.z);
	}
	constexpr Quaternion operator+(const Quaternion &q) const { return Quaternion(x + q.x, y + q.y, z + q.z, w + q.w); }
	constexpr Quaternion operator-(const Quaternion &q) const { return Quaternion(x - q.x, y - q.y, z - q.z, w - q.w); }
	constexpr Quaternion operator-() const { return Quaternion(-x, -y, -z, -w); }
	constexpr Quaternion operator*(real_t scalar) const { return Quaternion(x * scalar, y * scalar, z * scalar, w * scalar); }
	constexpr Quaternion operator/(real_t scalar) const { return *this * (real_t(1) / scalar); }
	void operator+=(const Quaternion &q) { *this = *this + q; }
	void operator-=(const Quaternion &q) { *this = *this - q; }
	void operator*=(real_t scalar) { *this = *this * scalar; }
	void operator/=(real_t scalar) { *this = *this / scalar; }
	bool operator==(const Quaternion &q) const { return x == q.x && y == q.y && z == q.z && w == q.w; }
	bool operator!=(const Quaternion &q) const { return !(*this == q); }
	friend constexpr Quaternion operator*(real_t scalar, const Quaternion &q) { return q * scalar; }

	explicit operator String() const;
};

} // namespace godot

#endif // GODOT_CPP_VARIANT_QUATERNION_HPP
