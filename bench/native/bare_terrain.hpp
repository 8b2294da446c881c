#pragma once

// What SCTerrainWork cannot do without, as loops over plain numbers: the draws, the heights, the sines, and writing it all down.
// No limits, no pieces, no ground that is too steep.

#include <godot_cpp/classes/ref_counted.hpp>
#include <godot_cpp/core/binder_common.hpp>
#include <godot_cpp/variant/packed_float32_array.hpp>
#include <godot_cpp/variant/packed_vector3_array.hpp>

class BenchBareTerrain : public godot::RefCounted {
	GDCLASS(BenchBareTerrain, godot::RefCounted)

public:
	godot::PackedFloat32Array fill(int64_t numbers);
	godot::PackedFloat32Array plant(const godot::PackedFloat32Array &ground, int64_t side, double step, int64_t count, int64_t seed);
	godot::PackedFloat32Array pack(const godot::PackedFloat32Array &places);
	godot::PackedVector3Array make_solid(const godot::PackedFloat32Array &places, double radius, double tall);

protected:
	static void _bind_methods();
};
