#pragma once

// The callable behind everything that comes back to a machine later: a finisher, the end of a tween
// or a timer, a signal that ends a rest. It holds numbers instead of pointers, so that it may be kept
// for as long as anybody likes: once its machine or its row has gone, calling it does nothing.

#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/variant/callable.hpp>
#include <godot_cpp/variant/callable_custom.hpp>

using namespace godot;

class SCMachineBase;

class RunCall final : public CallableCustom {
public:
	enum Kind {
		FINISH,
		WAKE,
		TWEEN_DONE,
		TIME_UP,
	};

	// `then` is what a timer calls before it finishes its action.
	static Callable make(Kind kind, const SCMachineBase *machine, int64_t serial, int index, const Callable &then = Callable());

	uint32_t hash() const override;
	String get_as_text() const override;
	CompareEqualFunc get_compare_equal_func() const override;
	CompareLessFunc get_compare_less_func() const override;
	// A late call is no mistake of the caller's, so the engine must not object to it.
	bool is_valid() const override { return true; }
	ObjectID get_object() const override { return machine_id; }
	void call(const Variant **arguments, int count, Variant &answer, GDExtensionCallError &error) const override;

private:
	static bool same(const CallableCustom *left, const CallableCustom *right);
	static bool before(const CallableCustom *left, const CallableCustom *right);

	ObjectID machine_id;
	int64_t serial = 0;
	int index = 0;
	Kind kind = FINISH;
	Callable then;
};
