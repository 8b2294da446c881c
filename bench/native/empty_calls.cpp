#include "empty_calls.hpp"

#include <godot_cpp/core/class_db.hpp>

using namespace godot;

void BenchEmptyCalls::send_event(const StringName &, const Variant &) {}

void BenchEmptyCalls::set_value(const StringName &, const Variant &) {}

void BenchEmptyCalls::_bind_methods() {
	ClassDB::bind_method(D_METHOD("send_event", "event_name", "data"), &BenchEmptyCalls::send_event, DEFVAL(Variant()));
	ClassDB::bind_method(D_METHOD("set_value", "variable_name", "value"), &BenchEmptyCalls::set_value);
}
