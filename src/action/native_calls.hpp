#pragma once

// Callables by which something outside comes back to a runtime: a signal, the end of a tween. They hold
// ids instead of pointers, so a late call finds its machine, its run of the state or its node gone and
// does nothing.

#include "action/sc_action.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/variant/callable.hpp>
#include <godot_cpp/variant/callable_custom.hpp>

// Comes back to an action in the run of the state that it was made in. While the handler is called that
// run is the running one, so slot() and still_here() mean it, and the action's settings have been read
// from the machine's variables. Events are sent with send_event_from_signal().
class ActionCall final : public CallableCustom {
public:
	using Handler = void (*)(SCMachineBase *machine, SCMachineAction *action, int index, const Array &handed_over);

	// `name` is what the debugger shows.
	static Callable make(const char *name, SCMachineBase *machine, const SCMachineAction *action, int index, Handler handler);

	uint32_t hash() const override;
	String get_as_text() const override { return name; }
	CompareEqualFunc get_compare_equal_func() const override { return &same; }
	CompareLessFunc get_compare_less_func() const override { return &before; }
	bool is_valid() const override { return true; }
	ObjectID get_object() const override { return machine_id; }
	void call(const Variant **arguments, int count, Variant &answer, GDExtensionCallError &error) const override;

private:
	static bool same(const CallableCustom *left, const CallableCustom *right);
	static bool before(const CallableCustom *left, const CallableCustom *right);

	const char *name = "";
	ObjectID machine_id;
	ObjectID action_id;
	int64_t serial = 0;
	int index = 0;
	Handler handler = nullptr;
};

// Comes back to a node, whatever has become of the machine meanwhile.
class NodeCall final : public CallableCustom {
public:
	using Handler = void (*)(Node *node);

	static Callable make(const char *name, const Node *node, Handler handler);

	uint32_t hash() const override;
	String get_as_text() const override { return name; }
	CompareEqualFunc get_compare_equal_func() const override { return &same; }
	CompareLessFunc get_compare_less_func() const override { return &before; }
	bool is_valid() const override { return true; }
	ObjectID get_object() const override { return node_id; }
	void call(const Variant **arguments, int count, Variant &answer, GDExtensionCallError &error) const override;

private:
	static bool same(const CallableCustom *left, const CallableCustom *right);
	static bool before(const CallableCustom *left, const CallableCustom *right);

	const char *name = "";
	ObjectID node_id;
	Handler handler = nullptr;
};
