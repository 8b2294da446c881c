#pragma once

// Methods that are bound as a machine's are and do nothing: what remains is what any call from a script costs.

#include <godot_cpp/classes/ref_counted.hpp>
#include <godot_cpp/core/binder_common.hpp>

class BenchEmptyCalls : public godot::RefCounted {
	GDCLASS(BenchEmptyCalls, godot::RefCounted)

public:
	void send_event(const godot::StringName &event_name, const godot::Variant &data = godot::Variant());
	void set_value(const godot::StringName &variable_name, const godot::Variant &value);

protected:
	static void _bind_methods();
};
