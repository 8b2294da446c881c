#pragma once

// The few engine calls that a job makes in every step, without the objects that stand for the engine's own
// in C++: finding one of those takes a lock of the engine's, which with ten thousand jobs costs more than
// the work itself. A node is looked up by its id, told apart from a freed one by that, and used at once.

#include "fast_lane/spots.hpp"

#include <godot_cpp/core/engine_ptrcall.hpp>
#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/variant/vector2.hpp>
#include <godot_cpp/variant/vector3.hpp>

using namespace godot;

namespace engine_calls {

struct Methods {
	GDExtensionMethodBindPtr place_in_2d = nullptr;
	GDExtensionMethodBindPtr put_in_2d = nullptr;
	GDExtensionMethodBindPtr place_in_3d = nullptr;
	GDExtensionMethodBindPtr put_in_3d = nullptr;
	GDExtensionMethodBindPtr is_inside_tree = nullptr;
};

inline Methods methods;

// To be called before any of the others. False when the engine has no such methods any more.
bool prepare();

// Null when no object has this id any more.
inline GDExtensionObjectPtr find(ObjectID id) {
	return gdextension_interface::object_get_instance_from_id(id);
}

template <class Answer>
inline Answer ask(GDExtensionMethodBindPtr method, GDExtensionObjectPtr object) {
	Answer answer{};
	gdextension_interface::object_method_bind_ptrcall(method, object, nullptr, &answer);
	return answer;
}

template <class Argument>
inline void tell(GDExtensionMethodBindPtr method, GDExtensionObjectPtr object, const Argument &argument) {
	const GDExtensionConstTypePtr arguments[] = { &argument };
	gdextension_interface::object_method_bind_ptrcall(method, object, arguments, nullptr);
}

// As spots::read.
inline bool read(GDExtensionObjectPtr node, spots::Side side, Vector3 &spot) {
	if (side == spots::IN_2D) {
		const Vector2 in_2d = ask<Vector2>(methods.place_in_2d, node);
		spot = Vector3(in_2d.x, in_2d.y, 0);
	} else if (side == spots::NOWHERE) {
		spot = Vector3();
	} else if (ask<GDExtensionBool>(methods.is_inside_tree, node)) {
		spot = ask<Vector3>(methods.place_in_3d, node);
	} else {
		return false;
	}
	return true;
}

// Moving a node can call user code, which may do anything.
inline void put(GDExtensionObjectPtr node, spots::Side side, const Vector3 &spot) {
	if (side == spots::IN_2D) {
		tell(methods.put_in_2d, node, Vector2(spot.x, spot.y));
	} else if (side == spots::IN_3D) {
		tell(methods.put_in_3d, node, spot);
	}
}

} // namespace engine_calls
