#pragma once

// Tells whether an Array of a design still holds the elements it held when it was read. A design may be
// edited in place at any time, with no setter called, so this is asked on every transition: it compares
// what lies in the array, element by element, and touches neither the elements nor their counts.

#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

class ArrayStamp {
	// An object in a Variant: its type, its id and its address.
	static constexpr size_t WORDS = sizeof(Variant) / sizeof(uint64_t);
	struct Element {
		uint64_t words[WORDS];
	};

	mutable LocalVector<Element> elements;
	int64_t hash = 0;

	// Of its first word, a Variant's type is all that counts: the rest is padding.
	static bool same(const Element &was, const Element &is) {
		return uint32_t(was.words[0]) == uint32_t(is.words[0]) && was.words[1] == is.words[1] && was.words[2] == is.words[2];
	}
	static const Element *elements_of(const Array &array) { return static_cast<const Element *>(array[0]._native_ptr()); }
	void copy_from(const Array &array) const;
	bool same_by_hash(const Array &array) const;

public:
	void take(const Array &array);
	// Whether the object is one of the elements.
	static bool lists(const Array &array, uint64_t object_id) {
		const uint32_t count = uint32_t(array.size());
		const Element *elements = count > 0 ? elements_of(array) : nullptr;
		for (uint32_t i = 0; i < count; i++) {
			if (uint32_t(elements[i].words[0]) == Variant::OBJECT && elements[i].words[1] == object_id) {
				return true;
			}
		}
		return false;
	}
	bool holds(const Array &array) const {
		const uint32_t count = uint32_t(array.size());
		if (count != elements.size()) {
			return false;
		}
		if (count == 0) {
			return true;
		}
		const Element *now = elements_of(array);
		for (uint32_t i = 0; i < count; i++) {
			if (!same(elements[i], now[i])) {
				return same_by_hash(array);
			}
		}
		return true;
	}
};
