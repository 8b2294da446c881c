#pragma once

// The work of a terrain tool that takes too long in a script: planting many things on a grid of heights, packing them for
// MultiMeshes a piece of ground at a time, and giving them something to bump into. Plain numbers in, plain numbers out: it may be
// called from any thread, and gives the same result on every machine.

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/color.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/packed_color_array.hpp>
#include <godot_cpp/variant/packed_float32_array.hpp>
#include <godot_cpp/variant/packed_vector3_array.hpp>

using namespace godot;

class SCTerrainWork : public Object {
	GDCLASS(SCTerrainWork, Object)

public:
	static PackedFloat32Array place_things(const PackedFloat32Array &ground, int64_t side, double step, double per_m2, int64_t seed, double keep, double lowest,
			double steepest, bool clustered);
	static Dictionary pack_things(const PackedFloat32Array &places, double scale_by, double sink, const Color &colour, double dimmest, double spread,
			const PackedColorArray &palette, double piece);
	static PackedVector3Array solid_faces(const PackedFloat32Array &places, double trunk_radius, double trunk_height, double boulder_size);

protected:
	static void _bind_methods();
};
