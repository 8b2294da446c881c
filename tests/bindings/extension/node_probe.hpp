// A node with methods that scripts override, and a resource with every property hook. BindingsChild adds nothing to the node but its own answers, so
// that the tests see parents being asked as well.

#pragma once

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/core/binder_common.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/gdvirtual.gen.inc>
#include <godot_cpp/templates/hash_map.hpp>

namespace bindings_test {

class BindingsNode : public godot::Node {
	GDCLASS(BindingsNode, godot::Node)

	int64_t frames = 0;
	int64_t ready_calls = 0;
	godot::PackedInt32Array notifications;

protected:
	static void _bind_methods();
	void _notification(int what);

	GDVIRTUAL1R(godot::String, _greet, godot::String)
	GDVIRTUAL1(_visit, godot::Node *)
	GDVIRTUAL0RC(bool, _is_enough)
	GDVIRTUAL2R(godot::Ref<godot::RefCounted>, _choose, godot::Ref<godot::RefCounted>, godot::Array)

public:
	void _process(double delta) override;
	void _ready() override;

	godot::String greet(const godot::String &name);
	void visit(godot::Node *node);
	bool is_enough() const;
	godot::Ref<godot::RefCounted> choose(const godot::Ref<godot::RefCounted> &fallback, const godot::Array &others);
	bool overrides_greet() const;

	int64_t get_frames() const { return frames; }
	int64_t get_ready_calls() const { return ready_calls; }
	godot::PackedInt32Array get_notifications() const { return notifications; }
};

class BindingsChild : public BindingsNode {
	GDCLASS(BindingsChild, BindingsNode)

	int64_t own_notifications = 0;

protected:
	static void _bind_methods();
	void _notification(int what);

public:
	int64_t get_own_notifications() const { return own_notifications; }
};

class BindingsResource : public godot::Resource {
	GDCLASS(BindingsResource, godot::Resource)

	godot::String title = "untitled";
	double amounts[2] = { 1.0, 2.0 };
	godot::TypedArray<godot::Resource> parts;
	godot::HashMap<godot::StringName, godot::Variant> extras;

protected:
	static void _bind_methods();
	bool _set(const godot::StringName &name, const godot::Variant &value);
	bool _get(const godot::StringName &name, godot::Variant &r_value) const;
	void _get_property_list(godot::List<godot::PropertyInfo> *list) const;
	void _validate_property(godot::PropertyInfo &property) const;
	bool _property_can_revert(const godot::StringName &name) const;
	bool _property_get_revert(const godot::StringName &name, godot::Variant &r_value) const;
	godot::String _to_string() const;

public:
	void set_title(const godot::String &value) { title = value; }
	godot::String get_title() const { return title; }
	void set_amount(int64_t index, double value);
	double get_amount(int64_t index) const;
	void set_parts(const godot::TypedArray<godot::Resource> &value) { parts = value; }
	godot::TypedArray<godot::Resource> get_parts() const { return parts; }
};

// Registered without a constructor of its own: only classes that derive from it can be made.
class BindingsAbstract : public godot::RefCounted {
	GDCLASS(BindingsAbstract, godot::RefCounted)

protected:
	static void _bind_methods() {}
};

} // namespace bindings_test
