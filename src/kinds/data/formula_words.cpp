#include "kinds/data/formula_words.hpp"

#include <godot_cpp/core/math.hpp>

namespace formula_words {

namespace {

constexpr const char *FUNCTIONS[] = { "abs", "absf", "absi", "acos", "acosh", "angle_difference", "asin", "asinh", "atan", "atan2", "atanh",
	"bezier_derivative", "bezier_interpolate", "ceil", "ceilf", "ceili", "clamp", "clampf", "clampi", "cos", "cosh", "cubic_interpolate",
	"cubic_interpolate_angle", "db_to_linear", "deg_to_rad", "ease", "exp", "floor", "floorf", "floori", "fmod", "fposmod", "inverse_lerp", "is_equal_approx",
	"is_finite", "is_inf", "is_nan", "is_zero_approx", "lerp", "lerp_angle", "lerpf", "linear_to_db", "log", "max", "maxf", "maxi", "min", "minf", "mini",
	"move_toward", "nearest_po2", "pingpong", "pow", "rad_to_deg", "randf", "randf_range", "randfn", "randi", "randi_range", "remap", "rotate_toward", "round",
	"roundf", "roundi", "sign", "signf", "signi", "sin", "sinh", "smoothstep", "snapped", "snappedf", "snappedi", "sqrt", "step_decimals", "tan", "tanh",
	"wrap", "wrapf", "wrapi" };

constexpr const char *METHODS[] = {
	// Of places.
	"abs", "angle", "angle_to", "angle_to_point", "aspect", "ceil", "clamp", "clampf", "clampi", "cross", "direction_to", "distance_squared_to", "distance_to",
	"dot", "floor", "is_equal_approx", "is_finite", "is_normalized", "is_zero_approx", "length", "length_squared", "lerp", "limit_length", "max",
	"max_axis_index", "maxf", "maxi", "min", "min_axis_index", "minf", "mini", "move_toward", "normalized", "orthogonal", "posmod", "posmodv", "project",
	"round", "sign", "signed_angle_to", "snapped", "snappedf", "snappedi",
	// Of colours.
	"blend", "darkened", "get_luminance", "inverted", "lightened", "to_html",
	// Of texts.
	"begins_with", "capitalize", "contains", "containsn", "count", "ends_with", "find", "get_slice", "is_empty", "is_valid_float", "is_valid_int", "left",
	"right", "rfind", "similarity", "strip_edges", "substr", "to_float", "to_int", "to_lower", "to_upper", "trim_prefix", "trim_suffix",
	// Of lists and tables.
	"find_key", "get", "has", "has_all", "keys", "size", "values"
};

constexpr const char *MADE[] = { "bool", "int", "float", "Vector2", "Vector2i", "Vector3", "Vector3i", "Vector4", "Vector4i", "Rect2", "Rect2i", "Color" };

template <size_t COUNT>
bool is_one_of(const char *const (&words)[COUNT], const String &name) {
	for (const char *word : words) {
		if (name == word) {
			return true;
		}
	}
	return false;
}

} // namespace

bool is_function(const String &name) {
	return is_one_of(FUNCTIONS, name);
}

bool is_method(const String &name) {
	return is_one_of(METHODS, name);
}

bool is_made(const String &name) {
	return is_one_of(MADE, name);
}

bool is_constant(const String &name, Variant &value) {
	if (name == "true" || name == "false") {
		value = name == "true";
	} else if (name == "null") {
		value = Variant();
	} else if (name == "PI") {
		value = Math::PI;
	} else if (name == "TAU") {
		value = Math::TAU;
	} else if (name == "INF") {
		value = Math::INF;
	} else if (name == "NAN") {
		value = Math::NaN;
	} else {
		return false;
	}
	return true;
}

} // namespace formula_words
