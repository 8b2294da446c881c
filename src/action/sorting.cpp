#include "action/sorting.hpp"

#include "action/places.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/core/math.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/dictionary.hpp>

#include <algorithm>

namespace sorting {

Key::Key(const Variant &compared, const Variant &of_item) : item(of_item) {
	switch (compared.get_type()) {
		case Variant::BOOL:
		case Variant::INT:
		case Variant::FLOAT:
			number = values::as_number(compared);
			// What is no number is neither smaller nor larger than any, which no sorting can work with.
			rank = Math::is_nan(number) ? NO_ORDER : NUMBER;
			break;
		case Variant::STRING:
		case Variant::STRING_NAME:
			rank = TEXT;
			text = compared;
			break;
		case Variant::VECTOR2:
		case Variant::VECTOR2I:
		case Variant::VECTOR3:
		case Variant::VECTOR3I:
			rank = PLACE;
			number = places::as_vector3(compared).length();
			break;
		default:
			if (ValueKinds::is_nothing(compared)) {
				rank = NOTHING;
			} else if (compared.get_type() == Variant::OBJECT) {
				rank = TEXT;
				text = words::text_of(compared);
			}
			break;
	}
}

bool Key::is_smaller_than(const Key &other) const {
	if (rank == TEXT) {
		return text.naturalnocasecmp_to(other.text) < 0;
	}
	return (rank == NUMBER || rank == PLACE) && number < other.number;
}

LocalVector<Key> keys_of(const Array &list, const String &by) {
	LocalVector<Key> keys;
	for (int64_t i = 0; i < list.size(); i++) {
		const Variant item = list[i];
		Variant compared = item;
		if (!by.is_empty() && item.get_type() == Variant::DICTIONARY) {
			compared = Dictionary(item).get(by, Variant());
		} else if (!by.is_empty() && item.get_type() == Variant::OBJECT) {
			const Object *object = item.get_validated_object();
			compared = object != nullptr ? object->get(by) : Variant();
		}
		keys.push_back(Key(compared, item));
	}
	return keys;
}

void sort(LocalVector<Key> &keys, bool largest_first) {
	if (keys.size() < 2) {
		return;
	}
	std::stable_sort(keys.ptr(), keys.ptr() + keys.size(), [largest_first](const Key &a, const Key &b) {
		if (a.rank != b.rank) {
			return a.rank < b.rank;
		}
		return largest_first ? b.is_smaller_than(a) : a.is_smaller_than(b);
	});
}

const Key *extreme(const LocalVector<Key> &keys, bool largest) {
	const Key *best = nullptr;
	for (const Key &key : keys) {
		if (key.rank >= Key::NO_ORDER || (best != nullptr && key.rank > best->rank)) {
			continue;
		}
		if (best == nullptr || key.rank < best->rank || (largest ? best->is_smaller_than(key) : key.is_smaller_than(*best))) {
			best = &key;
		}
	}
	return best;
}

} // namespace sorting
