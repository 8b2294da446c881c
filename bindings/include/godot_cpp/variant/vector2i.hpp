// A pair of integers: grid positions and pixel sizes. Same layout as the engine's.
#ifndef GODOT_CPP_VARIANT_VECTOR2I_HPP
#define GODOT_CPP_VARIANT_VECTOR2I_HPP

#include <godot_cpp/variant/vector2.hpp>

namespace godot {

struct [[nodiscard]] Vector2i : internal::IntVector<Vector2i> {
	enum Axis {
		AXIS_X,
		AXIS_Y,
	};
	static constexpr int AXIS_COUNT = 2;

	union {
		_UNNAMED_MEMBERS_ struct {
			union {
				int32_t x;
				int32_t width;
			};
			union {
				int32_t y;
				int32_t height;
			};
		};
		int32_t coord[2];
	};

	constexpr Vector2i() : x(0), y(0) {}
	constexpr Vector2i(int32_t x_value, int32_t y_value) : x(x_value), y(y_value) {}

	_FORCE_INLINE_ int32_t &operator[](int axis) { return coord[axis]; }
	_FORCE_INLINE_ const int32_t &operator[](int axis) const { return coord[axis]; }

	template <typename F, typename... V>
	constexpr Vector2i _each(F function, const V &...v) const {
		return Vector2i(function(x, v.x...), function(y, v.y...));
	}
	template <typename F, typename... V>
	constexpr auto _sum(F function, const V &...v) const {
		return function(x, v.x...) + function(y, v.y...);
	}

	Axis min_axis_index() const { return x < y ? AXIS_X : AXIS_Y; }
	Axis max_axis_index() const { return x < y ? AXIS_Y : AXIS_X; }
	constexpr real_t aspect() const { return real_t(x) / real_t(y); }

	explicit operator String() const;
	constexpr operator Vector2() const { return Vector2(real_t(x), real_t(y)); }
};

inline Vector2::operator Vector2i() const {
	return Vector2i(int32_t(x), int32_t(y));
}

using Size2i = Vector2i;
using Point2i = Vector2i;

} // namespace godot

#endif // GODOT_CPP_VARIANT_VECTOR2I_HPP
