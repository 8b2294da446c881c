#include "machine/value_kinds.hpp"

#include <cmath>
#include <limits>

bool ValueKinds::is_nothing(const Variant &value) {
	return value.get_type() == Variant::NIL || (value.get_type() == Variant::OBJECT && value.get_validated_object() == nullptr);
}

bool ValueKinds::is_number(const Variant &value) {
	return value.get_type() == Variant::INT || value.get_type() == Variant::FLOAT;
}

bool ValueKinds::is_same(const Variant &first, const Variant &second) {
	return first.get_type() == second.get_type() && first == second;
}

int64_t ValueKinds::whole_part(double number) {
	// The first double above every 64-bit whole number. Converting it or anything beyond is undefined.
	constexpr double TOO_HIGH = 9223372036854775808.0;
	if (std::isnan(number)) {
		return 0;
	}
	if (number >= TOO_HIGH) {
		return std::numeric_limits<int64_t>::max();
	}
	if (number < -TOO_HIGH) {
		return std::numeric_limits<int64_t>::min();
	}
	return int64_t(number);
}
