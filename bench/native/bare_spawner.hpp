#pragma once

// The calls of the engine without which no scene gets into the game: made of it, put in its place, marked, added.

#include <godot_cpp/classes/packed_scene.hpp>
#include <godot_cpp/classes/ref_counted.hpp>
#include <godot_cpp/core/binder_common.hpp>
#include <godot_cpp/variant/packed_vector2_array.hpp>

class BenchBareSpawner : public godot::RefCounted {
	GDCLASS(BenchBareSpawner, godot::RefCounted)

public:
	// With so many metas on each. In 3D the second number of a place is its z.
	void bring(const godot::Ref<godot::PackedScene> &scene, godot::Node *parent, const godot::PackedVector2Array &places, int64_t metas);

protected:
	static void _bind_methods();
};
