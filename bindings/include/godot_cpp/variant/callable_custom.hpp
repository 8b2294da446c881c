// The behaviour behind a Callable that is neither an object's method nor a script's lambda. Callable(memnew(...)) takes it over; the engine frees
// it with the last copy of that Callable, which may be long after its target has gone.

#ifndef GODOT_CPP_VARIANT_CALLABLE_CUSTOM_HPP
#define GODOT_CPP_VARIANT_CALLABLE_CUSTOM_HPP

#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <gdextension_interface.h>

namespace godot {

class CallableCustom {
public:
	typedef bool (*CompareEqualFunc)(const CallableCustom *p_a, const CallableCustom *p_b);
	typedef bool (*CompareLessFunc)(const CallableCustom *p_a, const CallableCustom *p_b);

	// Asked once; the engine keeps the answer.
	virtual uint32_t hash() const = 0;
	virtual String get_as_text() const = 0;
	// Two callables are compared only when both answer the same function.
	virtual CompareEqualFunc get_compare_equal_func() const = 0;
	virtual CompareLessFunc get_compare_less_func() const = 0;
	// By default: as long as the object it belongs to lives, and always when there is none.
	virtual bool is_valid() const;
	// Asked once, when the Callable is made.
	virtual ObjectID get_object() const = 0;
	virtual int get_argument_count(bool &r_is_valid) const;
	// The engine does not check the target before it calls: an implementation must.
	virtual void call(const Variant **p_arguments, int p_argcount, Variant &r_return_value, GDExtensionCallError &r_call_error) const = 0;

	virtual ~CallableCustom() {}
};

namespace internal {

// Makes an engine Callable in uninitialised storage; it owns p_custom from here on. A null p_custom gives an empty Callable.
void construct_custom_callable(GDExtensionUninitializedTypePtr r_callable, CallableCustom *p_custom);

// The CallableCustom behind an engine Callable, or null when this library did not make it.
CallableCustom *get_custom_callable(GDExtensionConstTypePtr p_callable);

} // namespace internal

} // namespace godot

#endif // GODOT_CPP_VARIANT_CALLABLE_CUSTOM_HPP
