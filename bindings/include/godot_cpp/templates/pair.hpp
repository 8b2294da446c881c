// What iterating a HashMap gives.
#ifndef GODOT_CPP_TEMPLATES_PAIR_HPP
#define GODOT_CPP_TEMPLATES_PAIR_HPP

#include <godot_cpp/templates/hashfuncs.hpp>

#include <utility>

namespace godot {

template <typename K, typename V>
struct KeyValue {
	const K key{};
	V value{};

	constexpr KeyValue() = default;
	KeyValue(const KeyValue &other) = default;
	KeyValue(KeyValue &&other) = default;
	void operator=(const KeyValue &other) = delete;
	constexpr KeyValue(const K &key_value, const V &value_value) : key(key_value), value(value_value) {}
	constexpr KeyValue(const K &key_value, V &&value_value) : key(key_value), value(std::move(value_value)) {}
	constexpr KeyValue(K &&key_value, V &&value_value) : key(std::move(key_value)), value(std::move(value_value)) {}
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
