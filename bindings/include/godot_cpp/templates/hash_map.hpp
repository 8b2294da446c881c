// Values by key, iterated in the order of insertion. Pointers and iterators to an entry stay good until that entry is erased, so a loop may erase
// the entry it is at after stepping past it, or any other one, and may insert.
#ifndef GODOT_CPP_TEMPLATES_HASH_MAP_HPP
#define GODOT_CPP_TEMPLATES_HASH_MAP_HPP

#include <godot_cpp/templates/hash_table.hpp>
#include <godot_cpp/templates/hashfuncs.hpp>
#include <godot_cpp/templates/pair.hpp>

#include <initializer_list>

namespace godot {

template <typename TKey, typename TValue, typename Hasher = HashMapHasherDefault, typename Comparator = HashMapComparatorDefault<TKey>>
class HashMap {
	struct KeyOf {
		static const TKey &key(const KeyValue<TKey, TValue> &entry) { return entry.key; }
	};
	using Table = internal::HashTable<TKey, KeyValue<TKey, TValue>, KeyOf, Hasher, Comparator>;
	using Node = typename Table::Node;

	Table table;
	// Where operator[] points when the table can hold no more: the reference has to be to something.
	TValue *dropped = nullptr;

public:
	using Iterator = typename Table::Iterator;
	using ConstIterator = typename Table::ConstIterator;

	HashMap() = default;
	explicit HashMap(uint32_t initial_capacity) { table.reserve(initial_capacity); }
	HashMap(const HashMap &other) { copy_from(other); }
	HashMap(HashMap &&other) noexcept { table.swap(other.table); }
	HashMap(std::initializer_list<KeyValue<TKey, TValue>> entries) {
		table.reserve(uint32_t(entries.size()));
		for (const KeyValue<TKey, TValue> &entry : entries) {
			insert(entry.key, entry.value);
		}
	}
	HashMap &operator=(const HashMap &other) {
		if (this != &other) {
			clear();
			copy_from(other);
		}
		return *this;
	}
	HashMap &operator=(HashMap &&other) noexcept {
		if (this != &other) {
			HashMap old;
			old.table.swap(table);
			table.swap(other.table);
		}
		return *this;
	}
	~HashMap() {
		if (dropped != nullptr) {
			memdelete(dropped);
		}
	}

	uint32_t size() const { return table.size(); }
	bool is_empty() const { return table.size() == 0; }
	uint32_t get_capacity() const { return table.get_capacity(); }
	void reserve(uint32_t new_size) { table.reserve(new_size); }
	void clear() { table.clear(); }
	void reset() { table.reset(); }

	bool has(const TKey &key) const { return table.find(key) != nullptr; }
	TValue *getptr(const TKey &key) {
		Node *node = table.find(key);
		return node ? &node->content.value : nullptr;
	}
	const TValue *getptr(const TKey &key) const {
		const Node *node = table.find(key);
		return node ? &node->content.value : nullptr;
	}
	// For a key that is known to be there.
	TValue &get(const TKey &key) {
		Node *node = table.find(key);
		CRASH_COND_MSG(node == nullptr, "HashMap key not found.");
		return node->content.value;
	}
	const TValue &get(const TKey &key) const {
		const Node *node = table.find(key);
		CRASH_COND_MSG(node == nullptr, "HashMap key not found.");
		return node->content.value;
	}
	const TValue &operator[](const TKey &key) const { return get(key); }
	TValue &operator[](const TKey &key) {
		Node *node = table.find(key);
		if (node == nullptr) {
			node = table.add(key, false, key, TValue());
		}
		if (unlikely(node == nullptr)) {
			if (dropped == nullptr) {
				dropped = memnew(TValue());
			}
			return *dropped;
		}
		return node->content.value;
	}

	Iterator find(const TKey &key) { return Iterator(table.find(key)); }
	ConstIterator find(const TKey &key) const { return ConstIterator(table.find(key)); }

	// An existing key keeps its place, and gets the new value.
	Iterator insert(const TKey &key, const TValue &value, bool front_insert = false) {
		Node *node = table.find(key);
		if (node == nullptr) {
			return Iterator(table.add(key, front_insert, key, value));
		}
		node->content.value = value;
		return Iterator(node);
	}

	bool erase(const TKey &key) {
		Node *node = table.find(key);
		if (node == nullptr) {
			return false;
		}
		table.remove(node);
		return true;
	}
	void remove(const ConstIterator &iterator) {
		if (iterator) {
			table.remove(iterator.node);
		}
	}

	// The entry keeps its place. False when there is no such entry, or another one has the new key.
	bool replace_key(const TKey &old_key, const TKey &new_key) {
		if (Comparator::compare(old_key, new_key)) {
			return has(old_key);
		}
		Node *node = table.find(old_key);
		ERR_FAIL_COND_V(node == nullptr || table.find(new_key) != nullptr, false);
		// The argument may be the very key that is being replaced.
		const TKey key = new_key;
		const_cast<TKey &>(node->content.key) = key;
		table.index_again(node, key);
		return true;
	}

	template <typename C = KeyValueSort<TKey, TValue>>
	void sort_custom() {
		table.sort(C());
	}
	void sort() { sort_custom(); }

	Iterator begin() { return Iterator(table.first()); }
	Iterator end() { return Iterator(); }
	Iterator last() { return Iterator(table.last()); }
	ConstIterator begin() const { return ConstIterator(table.first()); }
	ConstIterator end() const { return ConstIterator(); }
	ConstIterator last() const { return ConstIterator(table.last()); }

private:
	void copy_from(const HashMap &other) {
		table.reserve(other.size());
		for (const KeyValue<TKey, TValue> &entry : other) {
			table.add(entry.key, false, entry.key, entry.value);
		}
	}
};

} // namespace godot

#endif // GODOT_CPP_TEMPLATES_HASH_MAP_HPP
