#pragma once

// Makes the rules that a setting is shown by, may stay empty by, or is written by.

#include "settings/field_of.hpp"

#include <godot_cpp/variant/node_path.hpp>

namespace setting_rules {

// On, above zero, or holding something.
template <class V>
bool says_something(const V &value) {
	if constexpr (std::is_arithmetic_v<V> || std::is_enum_v<V>) {
		return value > V(0);
	} else if constexpr (std::is_same_v<V, Variant>) {
		return value.booleanize();
	} else if constexpr (std::is_same_v<V, StringName> || std::is_same_v<V, String> || std::is_same_v<V, NodePath>) {
		return !value.is_empty();
	} else {
		return value.is_valid();
	}
}

template <class Member>
struct MethodOwner;
template <class T>
struct MethodOwner<bool (T::*)() const> {
	using Owner = T;
};

template <bool Wanted, auto What, auto... Values>
bool holds(const Object *object) {
	if constexpr (std::is_member_function_pointer_v<decltype(What)>) {
		using Owner = typename MethodOwner<decltype(What)>::Owner;
		return (static_cast<const Owner *>(object)->*What)() == Wanted;
	} else {
		const auto &value = static_cast<const typename FieldOf<What>::Owner *>(object)->*What;
		if constexpr (sizeof...(Values) == 0) {
			return says_something(value) == Wanted;
		} else {
			return ((value == Values) || ...) == Wanted;
		}
	}
}

template <bool Wanted, auto What, auto... Values>
SettingRule made() {
	SettingRule rule;
	rule.holds = &holds<Wanted, What, Values...>;
	if constexpr (!std::is_member_function_pointer_v<decltype(What)>) {
		rule.about = &FieldOf<What>::row;
	}
	return rule;
}

// Whoever knows which settings a variable feeds says so here.
inline bool (*is_read_from_a_variable)(const Object *object, const StringName &setting) = nullptr;

// Whether every rule holds for the object as it stands.
bool all_hold(const LocalVector<SettingRule> &rules, const Object *object);
bool any_holds(const LocalVector<SettingRule> &rules, const Object *object);

} // namespace setting_rules
