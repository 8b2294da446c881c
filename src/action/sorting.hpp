#pragma once

// Telling values of any kinds apart by size, for putting a list in order and for finding its largest item.

#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace sorting {

// What an item is compared by. Numbers stand before words, words before places, and what has no order comes last,
// whichever way round the list is put.
struct Key {
	enum Rank {
		NUMBER,
		TEXT,
		PLACE,
		NO_ORDER,
		NOTHING,
	};
	Rank rank = NO_ORDER;
	double number = 0.0;
	String text;
	Variant item;

	Key() = default;
	Key(const Variant &compared, const Variant &of_item);
	// Of two of the same rank.
	bool is_smaller_than(const Key &other) const;
};

// `by` names the entry of a table, or the property of a node or a resource, that its items are compared by.
// Reading it may run a game's code.
LocalVector<Key> keys_of(const Array &list, const String &by);
// Items of the same size keep their order.
void sort(LocalVector<Key> &keys, bool largest_first);
// The first of several. Null when nothing in the list can be compared.
const Key *extreme(const LocalVector<Key> &keys, bool largest);

} // namespace sorting
