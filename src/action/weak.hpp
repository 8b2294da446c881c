#pragma once

// An object by its id, for a runtime that calls something in between that may run a game's code: null once it has been freed.

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/core/object_id.hpp>

using namespace godot;

template <class T>
class Weak {
	ObjectID id;

public:
	explicit Weak(const T *object) : id(object != nullptr ? ObjectID(object->get_instance_id()) : ObjectID()) {}
	T *get() const { return id.is_valid() ? Object::cast_to<T>(ObjectDB::get_instance(id)) : nullptr; }
};
