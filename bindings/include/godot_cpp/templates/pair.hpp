// Two values kept together; KeyValue is what iterating a HashMap gives.
#ifndef GODOT_CPP_TEMPLATES_PAIR_HPP
#define GODOT_CPP_TEMPLATES_PAIR_HPP

#include <godot_cpp/templates/hashfuncs.hpp>

#include <utility>

namespace godot {

template <typename F, typename S>
struct Pair {
	F first{};
	S second{};

	constexpr Pair() = default;
	constexpr Pair(const F &first_value, const S &second_value) :
			first(first_value), second(second_value) {}
	constexpr Pair(F &&first_value, S &&second_value) :
			first(std::move(first_value)), second(std::move(second_value)) {}
};

template <typename F, typename S>
constexpr bool operator==(const Pair<F, S> &a, const Pair<F, S> &b) {
	return a.first == b.first && a.second == b.second;
}

template <typename F, typename S>
constexpr bool operator!=(const Pair<F, S> &a, const Pair<F, S> &b) {
	return !(a == b);
}

template <typename F, typename S>
struct PairSort {
	constexpr bool operator()(const Pair<F, S> &a, const Pair<F, S> &b) const {
		return a.first == b.first ? a.second < b.second : a.first < b.first;
	}
};

template <typename F, typename S>
struct PairHash {
	static uint32_t hash(const Pair<F, S> &pair) {
		return hash_fmix32(hash_murmur3_one_32(HashMapHasherDefault::hash(pair.second), hash_murmur3_one_32(HashMapHasherDefault::hash(pair.first))));
	}
};

template <typename K, typename V>
struct KeyValue {
	const K key{};
	V value{};

	constexpr KeyValue() = default;
	KeyValue(const KeyValue &other) = default;
	KeyValue(KeyValue &&other) = default;
	void operator=(const KeyValue &other) = delete;
	constexpr KeyValue(const K &key_value, const V &value_value) :
			key(key_value), value(value_value) {}
	constexpr KeyValue(const K &key_value, V &&value_value) :
			key(key_value), value(std::move(value_value)) {}
	constexpr KeyValue(K &&key_value, V &&value_value) :
			key(std::move(key_value)), value(std::move(value_value)) {}
};

template <typename K, typename V>
constexpr bool operator==(const KeyValue<K, V> &a, const KeyValue<K, V> &b) {
	return a.key == b.key && a.value == b.value;
}

template <typename K, typename V>
constexpr bool operator!=(const KeyValue<K, V> &a, const KeyValue<K, V> &b) {
	return !(a == b);
}

template <typename K, typename V>
struct KeyValueSort {
	constexpr bool operator()(const KeyValue<K, V> &a, const KeyValue<K, V> &b) const { return a.key < b.key; }
};

} // namespace godot

#endif // GODOT_CPP_TEMPLATES_PAIR_HPP
