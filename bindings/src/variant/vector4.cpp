#include <godot_cpp/variant/vector4.hpp>
#include <godot_cpp/variant/vector4i.hpp>

#include "math_checks.hpp"

namespace godot {

namespace {

template <typename V>
int smallest_axis(const V &v) {
	int axis = 0;
	for (int i = 1; i < 4; i++) {
		axis = v[i] <= v[axis] ? i : axis;
	}
	return axis;
}

template <typename V>
int largest_axis(const V &v) {
	int axis = 0;
	for (int i = 1; i < 4; i++) {
		axis = v[i] > v[axis] ? i : axis;
	}
	return axis;
}

} // namespace

Vector4::Axis Vector4::min_axis_index() const {
	return Axis(smallest_axis(*this));
}

Vector4::Axis Vector4::max_axis_index() const {
	return Axis(largest_axis(*this));
}

Vector4::operator String() const {
	return String(Variant(*this));
}

Vector4i::Axis Vector4i::min_axis_index() const {
	return Axis(smallest_axis(*this));
}

Vector4i::Axis Vector4i::max_axis_index() const {
	return Axis(largest_axis(*this));
}

Vector4i::operator String() const {
	return String(Variant(*this));
}

} // namespace godot
