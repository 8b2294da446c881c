// What the tests call to see values cross the border between scripts and C++: references, containers, callables, and every way of binding a
// method. BindingsCounted tells how many of its kind live, BindingsValues does the exchanging.

#pragma once

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/ref_counted.hpp>
#include <godot_cpp/core/binder_common.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/variant/typed_array.hpp>
#include <godot_cpp/variant/typed_dictionary.hpp>

namespace bindings_test {

class BindingsCounted : public godot::RefCounted {
	GDCLASS(BindingsCounted, godot::RefCounted)

	static int64_t live;
	int64_t number = 0;

protected:
	static void _bind_methods();

public:
	static int64_t get_live() { return live; }

	BindingsCounted() { live++; }
	~BindingsCounted() override { live--; }

	void set_number(int64_t value) { number = value; }
	int64_t get_number() const { return number; }
};

class BindingsValues : public godot::RefCounted {
	GDCLASS(BindingsValues, godot::RefCounted)

public:
	enum Season { SPRING,
		SUMMER,
		AUTUMN,
		WINTER };
	enum Trait {
		TRAIT_LIGHT = 1,
		TRAIT_LOUD = 2,
	};

private:
	godot::Ref<godot::RefCounted> held;
	godot::Variant held_value;
	godot::Callable held_callable;
	int64_t calls = 0;

protected:
	static void _bind_methods();

public:
	godot::Variant echo(const godot::Variant &value) const { return value; }
	godot::Ref<godot::RefCounted> echo_ref(const godot::Ref<godot::RefCounted> &value) const { return value; }
	godot::Object *echo_object(godot::Object *value) const { return value; }
	godot::String echo_string(const godot::String &value) const { return value; }
	godot::StringName echo_name(const godot::StringName &value) const { return value; }
	godot::NodePath echo_path(const godot::NodePath &value) const { return value; }

	godot::Ref<BindingsCounted> make_counted(int64_t number) const;
	int64_t number_of(const godot::Ref<BindingsCounted> &counted) const;
	void hold(const godot::Ref<godot::RefCounted> &value) { held = value; }
	void hold_value(const godot::Variant &value) { held_value = value; }
	godot::Variant get_held_value() const { return held_value; }
	void churn(const godot::Variant &value, int64_t times) const;
	bool holds_live_object() const { return held_value.get_validated_object() != nullptr; }

	void append_to(godot::Array array, const godot::Variant &value) const { array.append(value); }
	godot::Array reversed(const godot::Array &array) const;
	godot::Dictionary inverted(const godot::Dictionary &dictionary) const;
	godot::Variant doubled(const godot::Variant &packed) const;
	int64_t sum(const godot::TypedArray<int64_t> &numbers) const;
	godot::TypedArray<godot::Node> children_of(godot::Node *parent) const;
	godot::TypedDictionary<godot::StringName, int64_t> lengths(const godot::TypedArray<godot::StringName> &names) const;
	bool is_refused(const godot::TypedArray<godot::Node> &nodes) const { return nodes.is_empty(); }

	godot::String with_defaults(int64_t number, const godot::String &text, double share, const godot::Array &list) const;
	godot::Variant join_all(const godot::Variant **arguments, GDExtensionInt count, GDExtensionCallError &error);
	static int64_t add(int64_t a, int64_t b) { return a + b; }
	Season next_season(Season season) const { return static_cast<Season>((season + 1) % 4); }
	godot::BitField<Trait> with_trait(godot::BitField<Trait> traits, Trait trait) const;
	int8_t as_small(int8_t value) const { return value; }
	float as_single(float value) const { return value; }

	godot::Callable custom_callable(godot::Object *target, const godot::Variant &reply) const;
	godot::Callable own_method();
	godot::Callable method_of(godot::Node *node) const;
	godot::Callable static_function() const;
	bool callables_agree();
	void hold_callable(const godot::Callable &callable) { held_callable = callable; }
	godot::Variant call_held(const godot::Array &arguments) const { return held_callable.callv(arguments); }
	godot::Variant call_back(const godot::Callable &callable, const godot::Variant &argument) const { return callable.call(argument); }
	int64_t note(int64_t amount, const godot::String &text);
	int64_t get_calls() const { return calls; }

	void emit_happened(int64_t number, const godot::Ref<BindingsCounted> &counted);
	bool connect_itself();
	void on_happened(int64_t number, const godot::Ref<BindingsCounted> &counted);

	godot::PackedStringArray check_variants() const;
	godot::Array math_cases() const;
	godot::Variant math_result(int64_t index, const godot::Array &arguments) const;
};

} // namespace bindings_test

VARIANT_ENUM_CAST(bindings_test::BindingsValues::Season);
VARIANT_BITFIELD_CAST(bindings_test::BindingsValues::Trait);
