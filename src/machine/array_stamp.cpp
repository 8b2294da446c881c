#include "machine/array_stamp.hpp"

static_assert(sizeof(Variant) == 24, "A single-precision build of the engine is what the stamp knows.");

void ArrayStamp::copy_from(const Array &array) const {
	const uint32_t count = uint32_t(array.size());
	elements.resize(count);
	if (count > 0) {
		const Element *now = elements_of(array);
		for (uint32_t i = 0; i < count; i++) {
			elements[i] = now[i];
		}
	}
}

void ArrayStamp::take(const Array &array) {
	copy_from(array);
	hash = array.hash();
}

// Elements that are no objects may look different and be the same.
bool ArrayStamp::same_by_hash(const Array &array) const {
	if (array.hash() != hash) {
		return false;
	}
	copy_from(array);
	return true;
}
