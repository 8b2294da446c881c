#pragma once

// What is known about a field of a class by its member pointer.

#include "settings/class_rows.hpp"

#include <type_traits>

template <class Member>
struct MemberTraits;
template <class T, class V>
struct MemberTraits<V T::*> {
	using Owner = T;
	using Value = V;
};

// What is known about one field at compile time, and its row once the class has registered.
template <auto Field>
struct FieldOf {
	using Value = typename MemberTraits<decltype(Field)>::Value;
	using Owner = typename MemberTraits<decltype(Field)>::Owner;
	// An enum crosses to scripts as a plain int.
	using Bound = std::conditional_t<std::is_enum_v<Value>, int64_t, Value>;
	using Argument = std::conditional_t<std::is_arithmetic_v<Bound>, Bound, const Bound &>;

	inline static const SettingRow *row = nullptr;
	static bool relists() { return row != nullptr && row->relists; }
};
