#include "machine/own_copy.hpp"

using namespace godot;

// Packed lists too: Variants share one, and a script changes it in place.
Variant own_copy(const Variant &value) {
	const Variant::Type type = value.get_type();
	return type == Variant::DICTIONARY || type >= Variant::ARRAY ? value.duplicate(true) : value;
}
