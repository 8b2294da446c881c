#include "fast_lane/engine_calls.hpp"

#include <godot_cpp/variant/string_name.hpp>

namespace {

// The numbers tell a method's parameters apart from those it may have in another version of the engine.
constexpr GDExtensionInt PLACE_IN_2D = 3341600327;
constexpr GDExtensionInt PUT_IN_2D = 743155724;
constexpr GDExtensionInt PLACE_IN_3D = 3360562783;
constexpr GDExtensionInt PUT_IN_3D = 3460891852;
constexpr GDExtensionInt IS_INSIDE_TREE = 36873697;

GDExtensionMethodBindPtr method(const char *class_name, const char *name, GDExtensionInt number) {
	const StringName of_class = class_name;
	const StringName called = name;
	return gdextension_interface::classdb_get_method_bind(of_class._native_ptr(), called._native_ptr(), number);
}

} // namespace

bool engine_calls::prepare() {
	if (methods.is_inside_tree == nullptr) {
		methods.place_in_2d = method("Node2D", "get_global_position", PLACE_IN_2D);
		methods.put_in_2d = method("Node2D", "set_global_position", PUT_IN_2D);
		methods.place_in_3d = method("Node3D", "get_global_position", PLACE_IN_3D);
		methods.put_in_3d = method("Node3D", "set_global_position", PUT_IN_3D);
		methods.is_inside_tree = method("Node", "is_inside_tree", IS_INSIDE_TREE);
	}
	return methods.place_in_2d != nullptr && methods.put_in_2d != nullptr && methods.place_in_3d != nullptr && methods.put_in_3d != nullptr &&
			methods.is_inside_tree != nullptr;
}
