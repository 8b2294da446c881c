// Four floats. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_VECTOR4_HPP
#define GODOT_CPP_VARIANT_VECTOR4_HPP

#include <godot_cpp/variant/vector_common.hpp>

namespace godot {

struct Vector4i;

struct [[nodiscard]] Vector4 : internal::RealVector<Vector4> {
	enum Axis {
		AXIS_X,
		AXIS_Y,
		AXIS_Z,
		AXIS_W,
	};
	static constexpr int AXIS_COUNT = 4;

	union {
		_UNNAMED_MEMBERS_ struct {
			real_t x;
			real_t y;
			real_t z;
			real_t w;
		};
		real_t coord[4];
	};

	constexpr Vector4() : x(0), y(0), z(0), w(0) {}
	constexpr Vector4(real_t x_value, real_t y_value, real_t z_value, real_t w_value) : x(x_value), y(y_value), z(z_value), w(w_value) {}

	_FORCE_INLINE_ real_t &operator[](int axis) { return coord[axis]; }
	_FORCE_INLINE_ const real_t &operator[](int axis) const { return coord[axis]; }

	template <typename F, typename... V>
	constexpr Vector4 _each(F function, const V &...v) const {
		return Vector4(function(x, v.x...), function(y, v.y...), function(z, v.z...), function(w, v.w...));
	}
	template <typename F, typename... V>
	constexpr auto _sum(F function, const V &...v) const {
		return function(x, v.x...) + function(y, v.y...) + function(z, v.z...) + function(w, v.w...);
	}

	// Of equal components the last is the smallest, the first the largest.
	Axis min_axis_index() const;
	Axis max_axis_index() const;

	explicit operator String() const;
	operator Vector4i() const;
};

} // namespace godot

#endif // GODOT_CPP_VARIANT_VECTOR4_HPP
