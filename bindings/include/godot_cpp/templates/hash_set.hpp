// Keys without repetition, iterated in the order of insertion. As with HashMap, erasing one key leaves iterators to the others good.
#ifndef GODOT_CPP_TEMPLATES_HASH_SET_HPP
#define GODOT_CPP_TEMPLATES_HASH_SET_HPP

#include <godot_cpp/templates/hash_table.hpp>
#include <godot_cpp/templates/hashfuncs.hpp>

#include <initializer_list>

namespace godot {

template <typename TKey, typename Hasher = HashMapHasherDefault, typename Comparator = HashMapComparatorDefault<TKey>>
class HashSet {
	struct KeyOf {
		static const TKey &key(const TKey &key) { return key; }
	};
	// A key in the table must not change, so nodes hold it const.
	using Table = internal::HashTable<TKey, const TKey, KeyOf, Hasher, Comparator>;
	using Node = typename Table::Node;

	Table table;

public:
	using Iterator = typename Table::ConstIterator;

	HashSet() = default;
	explicit HashSet(uint32_t initial_capacity) { table.reserve(initial_capacity); }
	HashSet(const HashSet &other) { copy_from(other); }
	HashSet(HashSet &&other) noexcept { table.swap(other.table); }
	HashSet(std::initializer_list<TKey> keys) {
		table.reserve(uint32_t(keys.size()));
		for (const TKey &key : keys) {
			insert(key);
		}
	}
	HashSet &operator=(const HashSet &other) {
		if (this != &other) {
			clear();
			copy_from(other);
		}
		return *this;
	}
	HashSet &operator=(HashSet &&other) noexcept {
		if (this != &other) {
			HashSet old;
			old.table.swap(table);
			table.swap(other.table);
		}
		return *this;
	}

	uint32_t size() const { return table.size(); }
	bool is_empty() const { return table.size() == 0; }
	uint32_t get_capacity() const { return table.get_capacity(); }
	void reserve(uint32_t new_size) { table.reserve(new_size); }
	void clear() { table.clear(); }
	void reset() { table.reset(); }

	bool has(const TKey &key) const { return table.find(key) != nullptr; }
	Iterator find(const TKey &key) const { return Iterator(table.find(key)); }
	Iterator insert(const TKey &key) {
		Node *node = table.find(key);
		return Iterator(node != nullptr ? node : table.add(key, false, key));
	}
	bool erase(const TKey &key) {
		Node *node = table.find(key);
		if (node == nullptr) {
			return false;
		}
		table.remove(node);
		return true;
	}
	void remove(const Iterator &iterator) {
		if (iterator) {
			table.remove(iterator.node);
		}
	}

	Iterator begin() const { return Iterator(table.first()); }
	Iterator end() const { return Iterator(); }
	Iterator last() const { return Iterator(table.last()); }

	bool operator==(const HashSet &other) const {
		if (size() != other.size()) {
			return false;
		}
		for (const TKey &key : *this) {
			if (!other.has(key)) {
				return false;
			}
		}
		return true;
	}
	bool operator!=(const HashSet &other) const { return !(*this == other); }

private:
	void copy_from(const HashSet &other) {
		table.reserve(other.size());
		for (const TKey &key : other) {
			table.add(key, false, key);
		}
	}
};

} // namespace godot

#endif // GODOT_CPP_TEMPLATES_HASH_SET_HPP
