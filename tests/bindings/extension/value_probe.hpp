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

using namespace godot;

// A line for each that was not true.
PackedStringArray check_variants();

class BindingsCounted : public RefCounted {
	GDCLASS(BindingsCounted, RefCounted)

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

class BindingsValues : public RefCounted {
	GDCLASS(BindingsValues, RefCounted)

	Ref<RefCounted> held;
	Variant held_value;
	Callable held_callable;
	int64_t calls = 0;

protected:
	static void _bind_methods();

public:
	Variant echo(const Variant &value) const { return value; }
	Ref<RefCounted> echo_ref(const Ref<RefCounted> &value) const { return value; }
	Object *echo_object(Object *value) const { return value; }
	String echo_string(const String &value) const { return value; }

	Ref<BindingsCounted> make_counted(int64_t number) const;
	int64_t number_of(const Ref<BindingsCounted> &counted) const { return counted.is_valid() ? counted->get_number() : -1; }
	void hold(const Ref<RefCounted> &value) { held = value; }
	void hold_value(const Variant &value) { held_value = value; }
	void churn(const Variant &value, int64_t times) const;
	bool holds_live_object() const { return held_value.get_validated_object() != nullptr; }

	void append_to(Array array, const Variant &value) const { array.append(value); }
	Variant doubled(const Variant &packed) const;
	int64_t sum(const TypedArray<int64_t> &numbers) const;
	TypedArray<Node> children_of(Node *parent) const;
	TypedDictionary<StringName, int64_t> lengths(const TypedArray<StringName> &names) const;

	String with_defaults(int64_t number, const String &text, double share) const { return vformat("%d %s %.2f", number, text, share); }
	static int64_t add(int64_t a, int64_t b) { return a + b; }
	int8_t as_small(int8_t value) const { return value; }

	Callable custom_callable(Object *target, const Variant &reply) const;
	Callable own_method();
	Callable method_of(Node *node) const;
	void hold_callable(const Callable &callable) { held_callable = callable; }
	Variant call_held(const Array &arguments) const { return held_callable.callv(arguments); }
	int64_t note(int64_t amount, const String &text);
	int64_t get_calls() const { return calls; }

	PackedStringArray check_variants() const;
	Array math_cases() const;
	Variant math_result(int64_t index, const Array &arguments) const;
};

} // namespace bindings_test
