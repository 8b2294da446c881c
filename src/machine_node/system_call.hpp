#pragma once

// The callable that stands between a signal of the engine and the event of a machine that waits for it.
// Made by system_events.cpp, one for each connection. It knows its machine by id, so a signal that comes
// after the machine has gone does nothing.

#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/variant/callable.hpp>
#include <godot_cpp/variant/callable_custom.hpp>

using namespace godot;

class SCMachine;

class SystemCall final : public CallableCustom {
public:
	enum Kind {
		// The signal says no more than that it happened.
		PLAIN,
		// Its one argument goes with the event.
		WITH_ARGUMENT,
		VISIBILITY,
		// A Control's input, whose one argument is the input event.
		GUI_INPUT,
		// A collision object's input, whose second argument is the input event.
		OBJECT_INPUT,
	};

	static Callable make(Kind kind, const SCMachine *machine, const StringName &event);

	uint32_t hash() const override;
	String get_as_text() const override;
	CompareEqualFunc get_compare_equal_func() const override;
	CompareLessFunc get_compare_less_func() const override;
	bool is_valid() const override { return true; }
	ObjectID get_object() const override { return machine_id; }
	int get_argument_count(bool &is_known) const override;
	void call(const Variant **arguments, int count, Variant &answer, GDExtensionCallError &error) const override;

private:
	static bool same(const CallableCustom *left, const CallableCustom *right);
	static bool before(const CallableCustom *left, const CallableCustom *right);
	int most_arguments() const;
	int fewest_arguments() const;

	ObjectID machine_id;
	Kind kind = PLAIN;
	StringName event;
};
