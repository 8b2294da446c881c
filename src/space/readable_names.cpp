#include "space/readable_names.hpp"

#include "machine/native_names.hpp"

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/node_path.hpp>
#include <godot_cpp/variant/string.hpp>

namespace readable_names {

namespace {

constexpr uint32_t PARENTS_BEFORE_A_LOOK = 64;

// By parent and by the name without its number, the number to be tried next.
struct Numbers {
	using OfOne = HashMap<StringName, int64_t>;
	mutable HashMap<uint64_t, OfOne> by_parent;
	mutable uint32_t look_at = PARENTS_BEFORE_A_LOOK;

	void forget_those_gone() const {
		if (by_parent.size() < look_at) {
			return;
		}
		LocalVector<uint64_t> gone;
		for (const KeyValue<uint64_t, OfOne> &entry : by_parent) {
			if (ObjectDB::get_instance(ObjectID(entry.key)) == nullptr) {
				gone.push_back(entry.key);
			}
		}
		for (const uint64_t id : gone) {
			by_parent.erase(id);
		}
		look_at = uint32_t(by_parent.size()) + PARENTS_BEFORE_A_LOOK;
	}
};

bool is_digit(char32_t letter) {
	return letter >= U'0' && letter <= U'9';
}

bool is_taken(const Node *parent, const String &name) {
	return parent->has_node(NodePath(name));
}

} // namespace

void give(const Node *parent, Node *made) {
	const String own = made->get_name();
	const String name = own.is_empty() ? made->get_class() : own;
	if (!is_taken(parent, name)) {
		return;
	}
	constexpr int64_t MOST_DIGITS = 9;
	int64_t letters = name.length();
	while (letters > 0 && name.length() - letters < MOST_DIGITS && is_digit(name[letters - 1])) {
		letters--;
	}
	const int64_t digits = name.length() - letters;
	const String base = name.left(letters);
	const Numbers &numbers = NativeNames::of<Numbers>();
	numbers.forget_those_gone();
	int64_t &next = numbers.by_parent[parent->get_instance_id()][base];
	next = MAX(next, digits > 0 ? name.substr(letters).to_int() + 1 : 2);
	String numbered = base + String::num_int64(next).pad_zeros(digits);
	while (is_taken(parent, numbered)) {
		next++;
		numbered = base + String::num_int64(next).pad_zeros(digits);
	}
	next++;
	made->set_name(numbered);
}

} // namespace readable_names
