#include <godot_cpp/variant/basis.hpp>

#include "math_checks.hpp"

namespace godot {

namespace {

// A rotation as three turns about axes `i`, `j`, `k`; `sign` is -1 where i, j, k run backwards.
struct TurnOrder {
	int i;
	int j;
	int k;
	real_t sign;
	// Looking straight along an axis, the first and the last turn become one: which of them is given as zero.
	bool first_is_zero;
	// Whether a turn about `j` alone is told apart, so that it can exceed a quarter.
	bool single_turn;
};

const TurnOrder TURN_ORDERS[6] = {
	{ 0, 1, 2, 1, false, true },
	{ 0, 2, 1, -1, false, false },
	{ 1, 0, 2, -1, false, true },
	{ 1, 2, 0, 1, true, false },
	{ 2, 0, 1, 1, true, false },
	{ 2, 1, 0, -1, false, false },
};

Basis turn_about(int axis, real_t angle) {
	const real_t c = Math::cos(angle);
	const real_t s = Math::sin(angle);
	switch (axis) {
		case 0:
			return Basis(1, 0, 0, 0, c, -s, 0, s, c);
		case 1:
			return Basis(c, 0, s, 0, 1, 0, -s, 0, c);
		default:
			return Basis(c, -s, 0, s, c, 0, 0, 0, 1);
	}
}

} // namespace

Basis Basis::from_euler(const Vector3 &euler, EulerOrder order) {
	ERR_FAIL_INDEX_V_MSG(int(order), 6, Basis(), "Invalid Euler order parameter.");
	const TurnOrder &turns = TURN_ORDERS[order];
	const Basis i = turn_about(turns.i, euler[turns.i]);
	const Basis j = turn_about(turns.j, euler[turns.j]);
	const Basis k = turn_about(turns.k, euler[turns.k]);
	// This grouping is the engine's, and decides the last bit of the result.
	return order == EULER_ORDER_XYZ ? i * (j * k) : i * j * k;
}

Vector3 Basis::get_euler(EulerOrder order) const {
	ERR_FAIL_INDEX_V_MSG(int(order), 6, Vector3(), "Invalid parameter for get_euler(order).");
	const TurnOrder &turns = TURN_ORDERS[order];
	const int i = turns.i, j = turns.j, k = turns.k;
	const real_t sign = turns.sign;
	const real_t sine = sign * rows[i][k];
	// Nearer to straight than this, the outer turns cannot be told apart.
	const real_t limit = 1.0f - 0.00000025f;
	Vector3 euler;
	if (sine < limit && sine > -limit) {
		if (turns.single_turn && rows[j][i] == 0 && rows[i][j] == 0 && rows[j][k] == 0 && rows[k][j] == 0 && rows[j][j] == 1) {
			euler[j] = Math::atan2(sine, rows[i][i]);
		} else {
			euler[i] = Math::atan2(-sign * rows[j][k], rows[k][k]);
			euler[j] = Math::asin(sine);
			euler[k] = Math::atan2(-sign * rows[i][j], rows[i][i]);
		}
		return euler;
	}
	euler[j] = sine < 0 ? real_t(-Math::PI / 2) : real_t(Math::PI / 2);
	if (turns.first_is_zero) {
		euler[k] = Math::atan2(sign * rows[j][i], rows[j][j]);
	} else if (order == EULER_ORDER_YXZ) {
		// Both columns hold the angle here; the engine reads this one.
		euler[i] = Math::atan2(rows[j][i], rows[j][j]) * (sine < 0 ? -1 : 1);
	} else {
		euler[i] = sign * Math::atan2(rows[k][j], rows[j][j]);
	}
	return euler;
}

Vector3 Basis::get_euler_normalized(EulerOrder order) const {
	Basis rotation = orthonormalized();
	if (rotation.determinant() < 0) {
		rotation.scale(Vector3(-1, -1, -1));
	}
	return rotation.get_euler(order);
}

Basis Basis::looking_at(const Vector3 &target, const Vector3 &up, bool use_model_front) {
	CHECK_MATH(!target.is_zero_approx(), Basis(), "The target vector can't be zero.");
	CHECK_MATH(!up.is_zero_approx(), Basis(), "The up vector can't be zero.");
	// Cameras look along -Z, models face +Z.
	const Vector3 z = use_model_front ? target.normalized() : -target.normalized();
	Vector3 x = up.cross(z);
	if (x.is_zero_approx()) {
		WARN_PRINT("Target and up vectors are colinear. This is not advised as it may cause unwanted rotation around local Z axis.");
		x = up.get_any_perpendicular();
	}
	x.normalize();
	return Basis(x, z.cross(x), z);
}

void Basis::set_column(int index, const Vector3 &value) {
	rows[0][index] = value.x;
	rows[1][index] = value.y;
	rows[2][index] = value.z;
}

Basis Basis::inverse() const {
	const real_t cofactor_x = rows[1][1] * rows[2][2] - rows[1][2] * rows[2][1];
	const real_t cofactor_y = rows[1][2] * rows[2][0] - rows[1][0] * rows[2][2];
	const real_t cofactor_z = rows[1][0] * rows[2][1] - rows[1][1] * rows[2][0];
	const real_t det = rows[0][0] * cofactor_x + rows[0][1] * cofactor_y + rows[0][2] * cofactor_z;
	CHECK_MATH(det != 0, *this, "A Basis whose determinant is zero has no inverse.");
	const real_t s = 1.0f / det;
	return Basis(cofactor_x * s, (rows[0][2] * rows[2][1] - rows[0][1] * rows[2][2]) * s, (rows[0][1] * rows[1][2] - rows[0][2] * rows[1][1]) * s,
			cofactor_y * s, (rows[0][0] * rows[2][2] - rows[0][2] * rows[2][0]) * s, (rows[0][2] * rows[1][0] - rows[0][0] * rows[1][2]) * s, cofactor_z * s,
			(rows[0][1] * rows[2][0] - rows[0][0] * rows[2][1]) * s, (rows[0][0] * rows[1][1] - rows[0][1] * rows[1][0]) * s);
}

real_t Basis::determinant() const {
	return rows[0][0] * (rows[1][1] * rows[2][2] - rows[2][1] * rows[1][2]) - rows[1][0] * (rows[0][1] * rows[2][2] - rows[2][1] * rows[0][2]) +
			rows[2][0] * (rows[0][1] * rows[1][2] - rows[1][1] * rows[0][2]);
}

Basis Basis::orthonormalized() const {
	Vector3 x = get_column(0);
	Vector3 y = get_column(1);
	Vector3 z = get_column(2);
	x.normalize();
	y = y - x * x.dot(y);
	y.normalize();
	z = z - x * x.dot(z) - y * y.dot(z);
	z.normalize();
	return Basis(x, y, z);
}

void Basis::orthogonalize() {
	*this = orthogonalized();
}

Basis Basis::orthogonalized() const {
	const Vector3 scale = get_scale();
	return orthonormalized().scaled_local(scale);
}

void Basis::set_axis_angle(const Vector3 &axis, real_t angle) {
#ifdef MATH_CHECKS
	ERR_FAIL_COND_MSG(!axis.is_normalized(), String("The axis Vector3 ") + String(axis) + String(" must be normalized."));
#endif
	const Vector3 squares(axis.x * axis.x, axis.y * axis.y, axis.z * axis.z);
	const real_t cosine = Math::cos(angle);
	const real_t sine = Math::sin(angle);
	const real_t t = 1 - cosine;
	rows[0][0] = squares.x + cosine * (1.0f - squares.x);
	rows[1][1] = squares.y + cosine * (1.0f - squares.y);
	rows[2][2] = squares.z + cosine * (1.0f - squares.z);
	real_t shared = axis.x * axis.y * t;
	real_t turned = axis.z * sine;
	rows[0][1] = shared - turned;
	rows[1][0] = shared + turned;
	shared = axis.x * axis.z * t;
	turned = axis.y * sine;
	rows[0][2] = shared + turned;
	rows[2][0] = shared - turned;
	shared = axis.y * axis.z * t;
	turned = axis.x * sine;
	rows[1][2] = shared - turned;
	rows[2][1] = shared + turned;
}

void Basis::set_axis_angle_scale(const Vector3 &axis, real_t angle, const Vector3 &scale) {
	*this = Basis(axis, angle) * from_scale(scale);
}

void Basis::set_euler_scale(const Vector3 &euler, const Vector3 &scale, EulerOrder order) {
	*this = from_euler(euler, order) * from_scale(scale);
}

void Basis::set_quaternion(const Quaternion &q) {
	const real_t s = 2.0f / q.length_squared();
	const real_t xs = q.x * s, ys = q.y * s, zs = q.z * s;
	const real_t wx = q.w * xs, wy = q.w * ys, wz = q.w * zs;
	const real_t xx = q.x * xs, xy = q.x * ys, xz = q.x * zs;
	const real_t yy = q.y * ys, yz = q.y * zs, zz = q.z * zs;
	*this = Basis(1.0f - (yy + zz), xy - wz, xz + wy, xy + wz, 1.0f - (xx + zz), yz - wx, xz - wy, yz + wx, 1.0f - (xx + yy));
}

void Basis::set_quaternion_scale(const Quaternion &quaternion, const Vector3 &scale) {
	*this = Basis(quaternion) * from_scale(scale);
}

Quaternion Basis::get_quaternion() const {
	CHECK_MATH(is_rotation(), Quaternion(),
			String("Basis ") + String(*this) +
					String(" must be normalized in order to be cast to a Quaternion. Use get_rotation_quaternion() or call orthonormalized() if the Basis "
						   "contains linearly independent vectors."));
	Quaternion q;
	const real_t trace = rows[0][0] + rows[1][1] + rows[2][2];
	if (trace > 0.0f) {
		const real_t root = Math::sqrt(trace + 1.0f);
		const real_t share = 0.5f / root;
		q = Quaternion((rows[2][1] - rows[1][2]) * share, (rows[0][2] - rows[2][0]) * share, (rows[1][0] - rows[0][1]) * share, root * 0.5f);
	} else {
		// The largest component first: dividing by a small one would lose digits.
		const int i = rows[0][0] < rows[1][1] ? (rows[1][1] < rows[2][2] ? 2 : 1) : (rows[0][0] < rows[2][2] ? 2 : 0);
		const int j = (i + 1) % 3;
		const int k = (i + 2) % 3;
		const real_t root = Math::sqrt(rows[i][i] - rows[j][j] - rows[k][k] + 1.0f);
		const real_t share = 0.5f / root;
		q[i] = root * 0.5f;
		q.w = (rows[k][j] - rows[j][k]) * share;
		q[j] = (rows[j][i] + rows[i][j]) * share;
		q[k] = (rows[k][i] + rows[i][k]) * share;
	}
	return q;
}

Quaternion Basis::get_rotation_quaternion() const {
	Basis rotation = orthonormalized();
	if (rotation.determinant() < 0) {
		rotation.scale(Vector3(-1, -1, -1));
	}
	return rotation.get_quaternion();
}

real_t Basis::get_uniform_scale() const {
	return (rows[0].length() + rows[1].length() + rows[2].length()) / 3.0f;
}

Basis Basis::lerp(const Basis &to, real_t weight) const {
	return _from_rows(rows[0].lerp(to.rows[0], weight), rows[1].lerp(to.rows[1], weight), rows[2].lerp(to.rows[2], weight));
}

Basis Basis::slerp(const Basis &to, real_t weight) const {
	Basis result(get_quaternion().slerp(to.get_quaternion(), weight));
	for (int i = 0; i < 3; i++) {
		result.rows[i] *= Math::lerp(rows[i].length(), to.rows[i].length(), weight);
	}
	return result;
}

bool Basis::is_orthogonal() const {
	const Vector3 x = get_column(0), y = get_column(1), z = get_column(2);
	return Math::is_zero_approx(x.dot(y)) && Math::is_zero_approx(x.dot(z)) && Math::is_zero_approx(y.dot(z));
}

bool Basis::is_orthonormal() const {
	const real_t one = 1;
	return Math::is_equal_approx(get_column(0).length_squared(), one) && Math::is_equal_approx(get_column(1).length_squared(), one) &&
			Math::is_equal_approx(get_column(2).length_squared(), one) && is_orthogonal();
}

bool Basis::is_conformal() const {
	const real_t length = get_column(0).length_squared();
	return Math::is_equal_approx(length, get_column(1).length_squared()) && Math::is_equal_approx(length, get_column(2).length_squared()) && is_orthogonal();
}

bool Basis::is_diagonal() const {
	return Math::is_zero_approx(rows[0][1]) && Math::is_zero_approx(rows[0][2]) && Math::is_zero_approx(rows[1][0]) && Math::is_zero_approx(rows[1][2]) &&
			Math::is_zero_approx(rows[2][0]) && Math::is_zero_approx(rows[2][1]);
}

bool Basis::is_rotation() const {
	return is_conformal() && Math::is_equal_approx(determinant(), real_t(1), real_t(UNIT_EPSILON));
}

bool Basis::is_equal_approx(const Basis &basis) const {
	return rows[0].is_equal_approx(basis.rows[0]) && rows[1].is_equal_approx(basis.rows[1]) && rows[2].is_equal_approx(basis.rows[2]);
}

bool Basis::is_same(const Basis &basis) const {
	return rows[0].is_same(basis.rows[0]) && rows[1].is_same(basis.rows[1]) && rows[2].is_same(basis.rows[2]);
}

Basis::operator String() const {
	return String(Variant(*this));
}

} // namespace godot
