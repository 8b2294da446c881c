#include "character/body_keys.hpp"

#include "machine/value_kinds.hpp"

#include <godot_cpp/core/math.hpp>

namespace body_keys {

namespace {

constexpr double SLACK = 0.00001;

} // namespace

bool is_about(double first, double second) {
	return first == second || Math::abs(first - second) < MAX(SLACK, Math::abs(first) * SLACK);
}

double number(const Object *object, const StringName &key, double otherwise) {
	if (!object->has_meta(key)) {
		return otherwise;
	}
	const Variant held = object->get_meta(key);
	return ValueKinds::is_number(held) ? double(held) : otherwise;
}

bool truth(const Object *object, const StringName &key) {
	return object->has_meta(key) && object->get_meta(key).booleanize();
}

void keep_number(Object *object, const StringName &key, double value, double otherwise) {
	if (!is_about(number(object, key, otherwise), value)) {
		object->set_meta(key, value);
	}
}

void keep_true(Object *object, const StringName &key) {
	if (!truth(object, key)) {
		object->set_meta(key, true);
	}
}

} // namespace body_keys
