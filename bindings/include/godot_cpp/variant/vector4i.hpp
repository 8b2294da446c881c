// Four integers. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_VECTOR4I_HPP
#define GODOT_CPP_VARIANT_VECTOR4I_HPP

#include <godot_cpp/variant/vector4.hpp>

namespace godot {

struct [[nodiscard]] Vector4i : internal::IntVector<Vector4i> {
	enum Axis {
		AXIS_X,
		AXIS_Y,
		AXIS_Z,
		AXIS_W,
	};
	static constexpr int AXIS_COUNT = 4;

	union {
		_UNNAMED_MEMBERS_ struct {
			int32_t x;
			int32_t y;
			int32_t z;
			int32_t w;
		};
		int32_t coord[4];
	};

	constexpr Vector4i() : x(0), y(0), z(0), w(0) {}
	constexpr Vector4i(int32_t x_value, int32_t y_value, int32_t z_value, int32_t w_value) : x(x_value), y(y_value), z(z_value), w(w_value) {}

	_FORCE_INLINE_ int32_t &operator[](int axis) { return coord[axis]; }
	_FORCE_INLINE_ const int32_t &operator[](int axis) const { return coord[axis]; }

	template <typename F, typename... V>
	constexpr Vector4i _each(F function, const V &...v) const {
		return Vector4i(function(x, v.x...), function(y, v.y...), function(z, v.z...), function(w, v.w...));
	}
	template <typename F, typename... V>
	constexpr auto _sum(F function, const V &...v) const {
		return function(x, v.x...) + function(y, v.y...) + function(z, v.z...) + function(w, v.w...);
	}

	// Of equal components the last is the smallest, the first the largest.
	Axis min_axis_index() const;
	Axis max_axis_index() const;

	explicit operator String() const;
	constexpr operator Vector4() const { return Vector4(real_t(x), real_t(y), real_t(z), real_t(w)); }
};

inline Vector4::operator Vector4i() const {
	return Vector4i(int32_t(x), int32_t(y), int32_t(z), int32_t(w));
}

} // namespace godot

#endif // GODOT_CPP_VARIANT_VECTOR4I_HPP
