#pragma once

// The one place where a class declares its settings: a line per setting binds the field to the
// engine's property system and keeps its doc text, its hint and its 2D default for every other
// reader. Called once per class, from _bind_methods.
//
// A field is bound through its member pointer, so there are no hand-written accessors:
//
//	ClassTable<SCMachineNote> table("A box drawn behind the states.");
//	table.setting<&SCMachineNote::title>("title", "The heading across the top of the box.");
//
// A class whose setter has more to do hands its own pair to property().

#include "machine/value_kinds.hpp"
#include "settings/class_rows.hpp"
#include "settings/field_of.hpp"
#include "settings/hints.hpp"
#include "settings/setting_edits.hpp"
#include "settings/setting_rules.hpp"

#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/typed_array.hpp>
#include <godot_cpp/variant/typed_dictionary.hpp>

#include <type_traits>

using namespace godot;

// An enum's own name and its constants as they are spelled in the code, in order from 0.
struct EnumWords {
	const char *name;
	const char *constants;
	// The words the inspector shows; without them they are made from the constants.
	const char *labels;
};

// Declares a nested enum once: the inspector's labels and the constants that scripts see come from it.
// A file or a script may put any number into it, hence a type that holds any.
#define SC_ENUM(m_name, ...) SC_ENUM_LABELLED(m_name, nullptr, __VA_ARGS__)
#define SC_ENUM_LABELLED(m_name, m_labels, ...)                                                                                                                \
	enum m_name : int { __VA_ARGS__ };                                                                                                                         \
	friend constexpr EnumWords enum_words_of(m_name) {                                                                                                         \
		return EnumWords{ #m_name, #__VA_ARGS__, m_labels };                                                                                                   \
	}

// Goes into the class body beside GDCLASS: the accessors that setting() binds.
#define SC_FIELDS                                                                                                                                              \
public:                                                                                                                                                        \
	template <auto Field>                                                                                                                                      \
	void put_field(typename FieldOf<Field>::Argument given_) {                                                                                                 \
		const auto fresh_ = typename FieldOf<Field>::Value(given_);                                                                                            \
		const ClassRow *row_ = setting_edits::row_of(this);                                                                                                    \
		if (!setting_edits::matter(this, row_, FieldOf<Field>::row)) {                                                                                         \
			this->*Field = fresh_;                                                                                                                             \
			return;                                                                                                                                            \
		}                                                                                                                                                      \
		const uint64_t before_ = setting_edits::shown(this, row_);                                                                                             \
		const bool relists_ = FieldOf<Field>::relists() && !(fresh_ == this->*Field);                                                                          \
		this->*Field = fresh_;                                                                                                                                 \
		setting_edits::tell(this, row_, before_, relists_);                                                                                                    \
	}                                                                                                                                                          \
	template <auto Field>                                                                                                                                      \
	typename FieldOf<Field>::Bound take_field() const {                                                                                                        \
		return typename FieldOf<Field>::Bound(this->*Field);                                                                                                   \
	}                                                                                                                                                          \
                                                                                                                                                               \
private:

// The engine's description of a value of type V, as far as the type alone decides it.
template <class V>
struct PropertyOf {
	static PropertyInfo info(const StringName &) { return PropertyInfo(GetTypeInfo<V>::get_class_info().type, StringName()); }
};
template <>
struct PropertyOf<Variant> {
	static PropertyInfo info(const StringName &) {
		return PropertyInfo(Variant::NIL, StringName(), PROPERTY_HINT_NONE, String(), PROPERTY_USAGE_DEFAULT | PROPERTY_USAGE_NIL_IS_VARIANT);
	}
};
template <class T>
struct PropertyOf<Ref<T>> {
	static PropertyInfo info(const StringName &) { return PropertyInfo(Variant::OBJECT, StringName(), PROPERTY_HINT_RESOURCE_TYPE, T::get_class_static()); }
};
// "24/17:SCMachineState": objects, resources by hint, of that class.
template <class T>
struct PropertyOf<TypedArray<T>> {
	static PropertyInfo info(const StringName &) {
		String of;
		if constexpr (std::is_base_of_v<Object, T>) {
			of = String::num_int64(Variant::OBJECT) + "/" + String::num_int64(PROPERTY_HINT_RESOURCE_TYPE) + ":" + String(T::get_class_static());
		} else {
			of = String::num_int64(GetTypeInfo<T>::get_class_info().type) + ":";
		}
		return PropertyInfo(Variant::ARRAY, StringName(), PROPERTY_HINT_TYPE_STRING, of);
	}
};

class SettingHandle {
	ClassRow &owner;
	SettingRow &row;

public:
	SettingHandle(ClassRow &class_row, SettingRow &setting_row) : owner(class_row), row(setting_row) {}
	// The default is in metres; a 2D machine takes it times the pixels of a metre.
	SettingHandle &px_in_2d() {
		row.px_in_2d = true;
		return *this;
	}
	SettingHandle &in_2d(const Variant &value) {
		row.in_2d = value;
		return *this;
	}
	SettingHandle &relists() {
		row.relists = true;
		return *this;
	}

	// Shown only while this holds. What it asks about is a setting (`only_if<&Self::loop>()`: it is on, or holds something),
	// a setting and values (`only_if<&Self::face, A_NODE, A_PLACE>()`: one of them), or a method of the kind. Said twice, both
	// have to hold. A setting that is read from a variable may come to hold anything, so nothing is hidden by it.
	template <auto What, auto... Values>
	SettingHandle &only_if() {
		row.shown_if.push_back(setting_rules::made<true, What, Values...>());
		owner.has_rules = true;
		return *this;
	}
	template <auto What, auto... Values>
	SettingHandle &unless() {
		row.shown_if.push_back(setting_rules::made<false, What, Values...>());
		owner.has_rules = true;
		return *this;
	}
	// May stay empty without the summary lacking something.
	SettingHandle &optional() {
		row.optional = true;
		return *this;
	}
	template <auto What, auto... Values>
	SettingHandle &optional_if() {
		row.optional_if.push_back(setting_rules::made<true, What, Values...>());
		return optional();
	}
	// Names a variable that the kind writes, though its name does not tell.
	SettingHandle &written() {
		row.written = true;
		return *this;
	}
	template <auto What, auto... Values>
	SettingHandle &written_if() {
		row.written_if.push_back(setting_rules::made<true, What, Values...>());
		return written();
	}
};

// The work of a ClassTable that does not depend on the class, kept out of the template.
class ClassTableBase {
protected:
	ClassRow &row;
	StringName class_name;

	ClassTableBase(const StringName &name, const StringName &parent, const char *about);
	StringName accessor_name(const char *prefix, const String &name) const;
	SettingRow &add_row(const PropertyInfo &info, const StringName &setter, const StringName &getter, const char *doc);
	PropertyInfo described(PropertyInfo info, const char *name, const Hint &hint) const;
	PropertyInfo described_enum(const EnumWords &words, const char *name, const Hint &hint) const;
	void bind_enum(const EnumWords &words);
	// Says so when the field has been given another name before.
	bool is_bound_already(const void *field, const char *name) const;

public:
	void group(const char *name, const char *prefix = "");
};

template <class T>
class ClassTable : public ClassTableBase {
	template <auto Field>
	static bool assign_field(Object *object, const Variant &value) {
		using Value = typename FieldOf<Field>::Value;
		using Bound = typename FieldOf<Field>::Bound;
		T *owner = static_cast<T *>(object);
		bool quiet = true;
		if constexpr (std::is_same_v<Value, Variant>) {
			quiet = !ValueKinds::may_call_out((owner->*Field).get_type());
		} else {
			quiet = !ValueKinds::may_call_out(Variant::Type(GetTypeInfo<Bound>::VARIANT_TYPE));
		}
		owner->*Field = Value(Bound(value));
		return quiet;
	}

public:
	explicit ClassTable(const char *about = "") : ClassTableBase(T::get_class_static(), T::get_parent_class_static(), about) {}

	template <auto Field>
	SettingHandle setting(const char *name, const char *doc) {
		return setting_as<Field>(name, name, hint::PLAIN, doc);
	}
	template <auto Field>
	SettingHandle setting(const char *name, const Hint &hint, const char *doc) {
		return setting_as<Field>(name, name, hint, doc);
	}
	// For a property whose accessors cannot carry its own name.
	template <auto Field>
	SettingHandle setting_as(const char *name, const char *accessors, const Hint &hint, const char *doc) {
		using Value = typename FieldOf<Field>::Value;
		if (is_bound_already(&FieldOf<Field>::row, name)) {
			return SettingHandle(row, *const_cast<SettingRow *>(FieldOf<Field>::row));
		}
		const StringName setter = accessor_name("set_", accessors);
		const StringName getter = accessor_name("get_", accessors);
		ClassDB::bind_method(D_METHOD(setter, name), &T::template put_field<Field>);
		ClassDB::bind_method(D_METHOD(getter), &T::template take_field<Field>);
		SettingRow *added = nullptr;
		if constexpr (std::is_enum_v<Value>) {
			added = &add_row(described_enum(enum_words_of(Value()), name, hint), setter, getter, doc);
		} else {
			added = &add_row(described(PropertyOf<Value>::info(class_name), name, hint), setter, getter, doc);
			added->any_type = std::is_same_v<Value, Variant>;
		}
		added->field = &FieldOf<Field>::row;
		added->assign = &assign_field<Field>;
		FieldOf<Field>::row = added;
		return SettingHandle(row, *added);
	}
	template <class Setter, class Getter>
	SettingHandle property(const char *name, const PropertyInfo &info, Setter setter, Getter getter, const char *doc, const char *accessors = nullptr,
			const char *argument = nullptr) {
		const String accessor = accessors != nullptr ? accessors : name;
		const StringName set_name = accessor_name("set_", accessor);
		const StringName get_name = accessor_name("get_", accessor);
		ClassDB::bind_method(D_METHOD(set_name, argument != nullptr ? argument : name), setter);
		ClassDB::bind_method(D_METHOD(get_name), getter);
		PropertyInfo named = info;
		named.name = name;
		return SettingHandle(row, add_row(named, set_name, get_name, doc));
	}
	template <class E>
	PropertyInfo enum_info(const char *name) const {
		return described_enum(enum_words_of(E()), name, hint::PLAIN);
	}
	template <class E>
	void constants_of() {
		bind_enum(enum_words_of(E()));
	}
};
