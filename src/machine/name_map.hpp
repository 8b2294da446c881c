#pragma once

// Values by name, in the order in which they came. Most machines have a handful of variables: these lie
// one beside the other and are found by looking at each, which touches less memory than any hash table;
// only a long list is indexed. Nothing is ever taken out of it but everything at once.

#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/string_name.hpp>

#include <utility>

using namespace godot;

template <class V>
class NameMap {
public:
	struct Entry {
		StringName key;
		V value;
	};

private:
	static constexpr uint32_t MOST_LOOKED_THROUGH = 12;

	LocalVector<Entry> entries;
	HashMap<StringName, uint32_t> *index = nullptr;

	void index_last() {
		if (entries.size() <= MOST_LOOKED_THROUGH) {
			return;
		}
		uint32_t from = entries.size() - 1;
		if (index == nullptr) {
			index = memnew((HashMap<StringName, uint32_t>));
			from = 0;
		}
		for (uint32_t i = from; i < entries.size(); i++) {
			index->insert(entries[i].key, i);
		}
	}

public:
	NameMap() = default;
	NameMap(const NameMap &) = delete;
	NameMap &operator=(const NameMap &) = delete;
	NameMap(NameMap &&other) noexcept : entries(std::move(other.entries)), index(std::exchange(other.index, nullptr)) {}
	NameMap &operator=(NameMap &&other) noexcept {
		std::swap(entries, other.entries);
		std::swap(index, other.index);
		return *this;
	}
	~NameMap() {
		if (index != nullptr) {
			memdelete(index);
		}
	}

	uint32_t size() const { return entries.size(); }
	bool is_empty() const { return entries.is_empty(); }
	void reserve(uint32_t count) { entries.reserve(count); }
	bool has(const StringName &key) const { return getptr(key) != nullptr; }

	// Good until the next insertion.
	const V *getptr(const StringName &key) const {
		if (index != nullptr) {
			const uint32_t *found = index->getptr(key);
			return found != nullptr ? &entries[*found].value : nullptr;
		}
		for (uint32_t i = 0; i < entries.size(); i++) {
			if (entries[i].key == key) {
				return &entries[i].value;
			}
		}
		return nullptr;
	}
	V *getptr(const StringName &key) { return const_cast<V *>(std::as_const(*this).getptr(key)); }

	// For a name that may be there already. The former value is destroyed when all is in order again.
	void insert(const StringName &key, const V &value) {
		if (V *found = getptr(key)) {
			[[maybe_unused]] const V former = std::exchange(*found, value);
			return;
		}
		entries.push_back({ key, value });
		index_last();
	}

	// Empty before the first value is destroyed, which can call user code.
	void clear() {
		[[maybe_unused]] const LocalVector<Entry> former = std::move(entries);
		if (index != nullptr) {
			memdelete(index);
			index = nullptr;
		}
	}

	const Entry *begin() const { return entries.ptr(); }
	const Entry *end() const { return entries.ptr() + entries.size(); }
};
