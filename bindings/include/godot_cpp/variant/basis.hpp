// Rotation and scale in 3D: a 3x3 matrix kept as rows. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_BASIS_HPP
#define GODOT_CPP_VARIANT_BASIS_HPP

#include <godot_cpp/classes/global_constants.hpp>
#include <godot_cpp/variant/quaternion.hpp>
#include <godot_cpp/variant/vector3.hpp>

namespace godot {

struct [[nodiscard]] Basis {
	Vector3 rows[3] = { Vector3(1, 0, 0), Vector3(0, 1, 0), Vector3(0, 0, 1) };

	constexpr Basis() = default;
	constexpr Basis(real_t xx, real_t xy, real_t xz, real_t yx, real_t yy, real_t yz, real_t zx, real_t zy, real_t zz) :
			rows{ Vector3(xx, xy, xz), Vector3(yx, yy, yz), Vector3(zx, zy, zz) } {}
	constexpr Basis(const Vector3 &x_axis, const Vector3 &y_axis, const Vector3 &z_axis) :
			Basis(x_axis.x, y_axis.x, z_axis.x, x_axis.y, y_axis.y, z_axis.y, x_axis.z, y_axis.z, z_axis.z) {}
	Basis(const Quaternion &quaternion) { set_quaternion(quaternion); }
	Basis(const Quaternion &quaternion, const Vector3 &scale) { set_quaternion_scale(quaternion, scale); }
	Basis(const Vector3 &axis, real_t angle) { set_axis_angle(axis, angle); }
	Basis(const Vector3 &axis, real_t angle, const Vector3 &scale) { set_axis_angle_scale(axis, angle, scale); }
	static Basis from_scale(const Vector3 &scale) { return Basis(scale.x, 0, 0, 0, scale.y, 0, 0, 0, scale.z); }
	static Basis from_euler(const Vector3 &euler, EulerOrder order = EULER_ORDER_YXZ);
	static Basis looking_at(const Vector3 &target, const Vector3 &up = Vector3(0, 1, 0), bool use_model_front = false);

	const Vector3 &operator[](int row) const { return rows[row]; }
	Vector3 &operator[](int row) { return rows[row]; }
	Vector3 get_column(int index) const { return Vector3(rows[0][index], rows[1][index], rows[2][index]); }
	void set_column(int index, const Vector3 &value);
	void set_columns(const Vector3 &x, const Vector3 &y, const Vector3 &z) { *this = Basis(x, y, z); }
	void set_zero() { *this = Basis(0, 0, 0, 0, 0, 0, 0, 0, 0); }
	Vector3 get_main_diagonal() const { return Vector3(rows[0][0], rows[1][1], rows[2][2]); }
	void set_diagonal(const Vector3 &diagonal) { *this = from_scale(diagonal); }

	constexpr real_t tdotx(const Vector3 &v) const { return rows[0].x * v.x + rows[1].x * v.y + rows[2].x * v.z; }
	constexpr real_t tdoty(const Vector3 &v) const { return rows[0].y * v.x + rows[1].y * v.y + rows[2].y * v.z; }
	constexpr real_t tdotz(const Vector3 &v) const { return rows[0].z * v.x + rows[1].z * v.y + rows[2].z * v.z; }
	constexpr Vector3 xform(const Vector3 &v) const { return Vector3(rows[0].dot(v), rows[1].dot(v), rows[2].dot(v)); }
	constexpr Vector3 xform_inv(const Vector3 &v) const { return Vector3(tdotx(v), tdoty(v), tdotz(v)); }

	void invert() { *this = inverse(); }
	Basis inverse() const;
	void transpose() { *this = transposed(); }
	constexpr Basis transposed() const { return Basis(rows[0].x, rows[1].x, rows[2].x, rows[0].y, rows[1].y, rows[2].y, rows[0].z, rows[1].z, rows[2].z); }
	real_t determinant() const;
	void orthonormalize() { *this = orthonormalized(); }
	Basis orthonormalized() const;
	void orthogonalize();
	Basis orthogonalized() const;

	void rotate(const Vector3 &axis, real_t angle) { *this = rotated(axis, angle); }
	Basis rotated(const Vector3 &axis, real_t angle) const { return Basis(axis, angle) * *this; }
	void rotate_local(const Vector3 &axis, real_t angle) { *this = rotated_local(axis, angle); }
	Basis rotated_local(const Vector3 &axis, real_t angle) const { return *this * Basis(axis, angle); }
	void rotate(const Vector3 &euler, EulerOrder order = EULER_ORDER_YXZ) { *this = rotated(euler, order); }
	Basis rotated(const Vector3 &euler, EulerOrder order = EULER_ORDER_YXZ) const { return from_euler(euler, order) * *this; }
	void rotate(const Quaternion &quaternion) { *this = rotated(quaternion); }
	Basis rotated(const Quaternion &quaternion) const { return Basis(quaternion) * *this; }

	void set_axis_angle(const Vector3 &axis, real_t angle);
	void set_axis_angle_scale(const Vector3 &axis, real_t angle, const Vector3 &scale);
	void get_axis_angle(Vector3 &axis, real_t &angle) const { get_quaternion().get_axis_angle(axis, angle); }
	void get_rotation_axis_angle(Vector3 &axis, real_t &angle) const { get_rotation_quaternion().get_axis_angle(axis, angle); }
	void set_euler(const Vector3 &euler, EulerOrder order = EULER_ORDER_YXZ) { *this = from_euler(euler, order); }
	void set_euler_scale(const Vector3 &euler, const Vector3 &scale, EulerOrder order = EULER_ORDER_YXZ);
	Vector3 get_euler(EulerOrder order = EULER_ORDER_YXZ) const;
	Vector3 get_euler_normalized(EulerOrder order = EULER_ORDER_YXZ) const;
	void set_quaternion(const Quaternion &quaternion);
	void set_quaternion_scale(const Quaternion &quaternion, const Vector3 &scale);
	Quaternion get_quaternion() const;
	operator Quaternion() const { return get_quaternion(); }
	// The rotation alone, whatever the scale; a mirrored basis is mirrored back first.
	Quaternion get_rotation_quaternion() const;

	void scale(const Vector3 &amount) { *this = scaled(amount); }
	Basis scaled(const Vector3 &amount) const { return Basis::_from_rows(rows[0] * amount.x, rows[1] * amount.y, rows[2] * amount.z); }
	void scale_local(const Vector3 &amount) { *this = scaled_local(amount); }
	Basis scaled_local(const Vector3 &amount) const { return Basis::_from_rows(rows[0] * amount, rows[1] * amount, rows[2] * amount); }
	Vector3 get_scale() const { return SIGN(determinant()) * get_scale_abs(); }
	Vector3 get_scale_abs() const { return Vector3(get_column(0).length(), get_column(1).length(), get_column(2).length()); }
	real_t get_uniform_scale() const;

	Basis lerp(const Basis &to, real_t weight) const;
	Basis slerp(const Basis &to, real_t weight) const;

	bool is_orthogonal() const;
	bool is_orthonormal() const;
	bool is_conformal() const;
	bool is_diagonal() const;
	bool is_rotation() const;
	bool is_equal_approx(const Basis &basis) const;
	bool is_same(const Basis &basis) const;
	bool is_finite() const { return rows[0].is_finite() && rows[1].is_finite() && rows[2].is_finite(); }
	bool operator==(const Basis &basis) const { return rows[0] == basis.rows[0] && rows[1] == basis.rows[1] && rows[2] == basis.rows[2]; }
	bool operator!=(const Basis &basis) const { return !(*this == basis); }

	void operator*=(const Basis &basis) { *this = *this * basis; }
	constexpr Basis operator*(const Basis &basis) const {
		return Basis(basis.tdotx(rows[0]), basis.tdoty(rows[0]), basis.tdotz(rows[0]), basis.tdotx(rows[1]), basis.tdoty(rows[1]), basis.tdotz(rows[1]),
				basis.tdotx(rows[2]), basis.tdoty(rows[2]), basis.tdotz(rows[2]));
	}
	void operator+=(const Basis &basis) { *this = *this + basis; }
	Basis operator+(const Basis &basis) const { return _from_rows(rows[0] + basis.rows[0], rows[1] + basis.rows[1], rows[2] + basis.rows[2]); }
	void operator-=(const Basis &basis) { *this = *this - basis; }
	Basis operator-(const Basis &basis) const { return _from_rows(rows[0] - basis.rows[0], rows[1] - basis.rows[1], rows[2] - basis.rows[2]); }
	void operator*=(real_t value) { *this = *this * value; }
	Basis operator*(real_t value) const { return _from_rows(rows[0] * value, rows[1] * value, rows[2] * value); }
	void operator/=(real_t value) { *this = *this / value; }
	Basis operator/(real_t value) const { return _from_rows(rows[0] / value, rows[1] / value, rows[2] / value); }

	explicit operator String() const;

private:
	static constexpr Basis _from_rows(const Vector3 &x, const Vector3 &y, const Vector3 &z) { return Basis(x.x, x.y, x.z, y.x, y.y, y.z, z.x, z.y, z.z); }
};

inline Basis Vector3::outer(const Vector3 &with) const {
	return Basis(x * with.x, x * with.y, x * with.z, y * with.x, y * with.y, y * with.z, z * with.x, z * with.y, z * with.z);
}

} // namespace godot

#endif // GODOT_CPP_VARIANT_BASIS_HPP
