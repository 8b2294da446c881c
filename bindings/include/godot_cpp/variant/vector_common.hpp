// Everything the six vector types share: arithmetic, comparison, per-component functions. A vector derives from one of the two
// templates below and provides `_each` (a new vector from a function of the components) and `_sum` (components added in order).
#ifndef GODOT_CPP_VARIANT_VECTOR_COMMON_HPP
#define GODOT_CPP_VARIANT_VECTOR_COMMON_HPP

#include <godot_cpp/core/math.hpp>

namespace godot {

class String;

namespace internal {

// `V` is the vector, `S` its component.
template <typename V, typename S>
struct VectorBase {
	constexpr V operator+(const V &v) const {
		return _self()._each([](S a, S b) { return S(a + b); }, v);
	}
	constexpr V operator-(const V &v) const {
		return _self()._each([](S a, S b) { return S(a - b); }, v);
	}
	constexpr V operator*(const V &v) const {
		return _self()._each([](S a, S b) { return S(a * b); }, v);
	}
	constexpr V operator/(const V &v) const {
		return _self()._each([](S a, S b) { return S(a / b); }, v);
	}
	constexpr V operator*(S scalar) const {
		return _self()._each([scalar](S a) { return S(a * scalar); });
	}
	constexpr V operator/(S scalar) const {
		return _self()._each([scalar](S a) { return S(a / scalar); });
	}
	constexpr V operator-() const {
		return _self()._each([](S a) { return S(-a); });
	}
	constexpr V &operator+=(const V &v) { return _self() = *this + v; }
	constexpr V &operator-=(const V &v) { return _self() = *this - v; }
	constexpr V &operator*=(const V &v) { return _self() = *this * v; }
	constexpr V &operator/=(const V &v) { return _self() = *this / v; }
	constexpr V &operator*=(S scalar) { return _self() = *this * scalar; }
	constexpr V &operator/=(S scalar) { return _self() = *this / scalar; }
	friend constexpr V operator*(S scalar, const V &v) { return v * scalar; }

	bool operator==(const V &v) const {
		for (int i = 0; i < V::AXIS_COUNT; i++) {
			if (_self()[i] != v[i]) {
				return false;
			}
		}
		return true;
	}
	bool operator!=(const V &v) const { return !(*this == v); }
	// Ordered by the first component that differs. `<=` is no negation of `>`: neither holds of NaN.
	bool operator<(const V &v) const {
		const int axis = _first_difference(v);
		return _self()[axis] < v[axis];
	}
	bool operator>(const V &v) const {
		const int axis = _first_difference(v);
		return _self()[axis] > v[axis];
	}
	bool operator<=(const V &v) const {
		const int axis = _first_difference(v);
		return _self()[axis] <= v[axis];
	}
	bool operator>=(const V &v) const {
		const int axis = _first_difference(v);
		return _self()[axis] >= v[axis];
	}

	V min(const V &with) const {
		return _self()._each([](S a, S b) { return MIN(a, b); }, with);
	}
	V max(const V &with) const {
		return _self()._each([](S a, S b) { return MAX(a, b); }, with);
	}
	V clamp(const V &low, const V &high) const {
		return _self()._each([](S a, S l, S h) { return CLAMP(a, l, h); }, low, high);
	}
	V abs() const {
		return _self()._each([](S a) { return Math::abs(a); });
	}
	V sign() const {
		return _self()._each([](S a) { return SIGN(a); });
	}
	V snapped(const V &step) const {
		return _self()._each([](S a, S s) { return S(Math::snapped(a, s)); }, step);
	}

protected:
	constexpr V _min_scalar(S with) const {
		return _self()._each([with](S a) { return MIN(a, with); });
	}
	constexpr V _max_scalar(S with) const {
		return _self()._each([with](S a) { return MAX(a, with); });
	}
	constexpr V _clamp_scalar(S low, S high) const {
		return _self()._each([low, high](S a) { return CLAMP(a, low, high); });
	}
	V _snapped_scalar(S step) const {
		return _self()._each([step](S a) { return S(Math::snapped(a, step)); });
	}
	constexpr const V &_self() const { return static_cast<const V &>(*this); }
	constexpr V &_self() { return static_cast<V &>(*this); }

private:
	int _first_difference(const V &v) const {
		int axis = 0;
		while (axis < V::AXIS_COUNT - 1 && _self()[axis] == v[axis]) {
			axis++;
		}
		return axis;
	}
};

template <typename V>
struct RealVector : VectorBase<V, real_t> {
	using S = real_t;

	constexpr S dot(const V &with) const {
		return _self()._sum([](S a, S b) { return a * b; }, with);
	}
	constexpr S length_squared() const { return dot(_self()); }
	S length() const { return Math::sqrt(length_squared()); }
	void normalize() {
		const S squared = length_squared();
		if (squared == 0) {
			_self() = V();
		} else {
			_self() /= Math::sqrt(squared);
		}
	}
	V normalized() const {
		V v = _self();
		v.normalize();
		return v;
	}
	bool is_normalized() const { return Math::is_equal_approx(length_squared(), S(1), S(UNIT_EPSILON)); }
	S distance_squared_to(const V &to) const { return (to - _self()).length_squared(); }
	S distance_to(const V &to) const { return Math::sqrt(distance_squared_to(to)); }
	V direction_to(const V &to) const { return (to - _self()).normalized(); }
	V limit_length(S limit = 1) const {
		const S size = length();
		V v = _self();
		if (size > 0 && limit < size) {
			v /= size;
			v *= limit;
		}
		return v;
	}
	V move_toward(const V &to, S delta) const {
		const V way = to - _self();
		const S size = way.length();
		return size <= delta || size < S(CMP_EPSILON) ? to : _self() + way / size * delta;
	}
	V project(const V &to) const { return to * (dot(to) / to.length_squared()); }

	bool is_equal_approx(const V &v) const {
		for (int i = 0; i < V::AXIS_COUNT; i++) {
			if (!Math::is_equal_approx(_self()[i], v[i])) {
				return false;
			}
		}
		return true;
	}
	bool is_same(const V &v) const {
		for (int i = 0; i < V::AXIS_COUNT; i++) {
			if (!Math::is_same(_self()[i], v[i])) {
				return false;
			}
		}
		return true;
	}
	bool is_zero_approx() const {
		for (int i = 0; i < V::AXIS_COUNT; i++) {
			if (!Math::is_zero_approx(_self()[i])) {
				return false;
			}
		}
		return true;
	}
	bool is_finite() const {
		for (int i = 0; i < V::AXIS_COUNT; i++) {
			if (!Math::is_finite(_self()[i])) {
				return false;
			}
		}
		return true;
	}

	V floor() const {
		return _self()._each([](S a) { return Math::floor(a); });
	}
	V ceil() const {
		return _self()._each([](S a) { return Math::ceil(a); });
	}
	V round() const {
		return _self()._each([](S a) { return Math::round(a); });
	}
	V inverse() const {
		return _self()._each([](S a) { return S(1) / a; });
	}
	V posmod(S mod) const {
		return _self()._each([mod](S a) { return Math::fposmod(a, mod); });
	}
	V posmodv(const V &mod) const {
		return _self()._each([](S a, S m) { return Math::fposmod(a, m); }, mod);
	}
	V minf(S with) const { return this->_min_scalar(with); }
	V maxf(S with) const { return this->_max_scalar(with); }
	V clampf(S low, S high) const { return this->_clamp_scalar(low, high); }
	V snappedf(S step) const { return this->_snapped_scalar(step); }

	constexpr V lerp(const V &to, S weight) const {
		return _self()._each([weight](S a, S b) { return Math::lerp(a, b, weight); }, to);
	}
	V cubic_interpolate(const V &b, const V &pre_a, const V &post_b, S weight) const {
		return _self()._each([weight](S from, S to, S pre, S post) { return Math::cubic_interpolate(from, to, pre, post, weight); }, b, pre_a, post_b);
	}
	V cubic_interpolate_in_time(const V &b, const V &pre_a, const V &post_b, S weight, S b_t, S pre_a_t, S post_b_t) const {
		return _self()._each([=](S from, S to, S pre, S post) { return Math::cubic_interpolate_in_time(from, to, pre, post, weight, b_t, pre_a_t, post_b_t); },
				b, pre_a, post_b);
	}
	V bezier_interpolate(const V &control_1, const V &control_2, const V &end, S t) const {
		return _self()._each([t](S a, S c1, S c2, S e) { return Math::bezier_interpolate(a, c1, c2, e, t); }, control_1, control_2, end);
	}
	V bezier_derivative(const V &control_1, const V &control_2, const V &end, S t) const {
		return _self()._each([t](S a, S c1, S c2, S e) { return Math::bezier_derivative(a, c1, c2, e, t); }, control_1, control_2, end);
	}

protected:
	using VectorBase<V, S>::_self;
};

template <typename V>
struct IntVector : VectorBase<V, int32_t> {
	using S = int32_t;

	constexpr V operator%(const V &v) const {
		return _self()._each([](S a, S b) { return a % b; }, v);
	}
	constexpr V operator%(S scalar) const {
		return _self()._each([scalar](S a) { return a % scalar; });
	}
	constexpr V &operator%=(const V &v) { return _self() = *this % v; }
	constexpr V &operator%=(S scalar) { return _self() = *this % scalar; }

	int64_t length_squared() const {
		return _self()._sum([](S a) { return int64_t(a) * a; });
	}
	double length() const { return Math::sqrt(double(length_squared())); }
	int64_t distance_squared_to(const V &to) const { return (to - _self()).length_squared(); }
	double distance_to(const V &to) const { return (to - _self()).length(); }
	V mini(S with) const { return this->_min_scalar(with); }
	V maxi(S with) const { return this->_max_scalar(with); }
	V clampi(S low, S high) const { return this->_clamp_scalar(low, high); }
	V snappedi(S step) const { return this->_snapped_scalar(step); }

protected:
	using VectorBase<V, S>::_self;
};

} // namespace internal

} // namespace godot

#endif // GODOT_CPP_VARIANT_VECTOR_COMMON_HPP
