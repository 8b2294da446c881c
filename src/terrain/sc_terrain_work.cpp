#include "terrain/sc_terrain_work.hpp"

#include <godot_cpp/core/class_db.hpp>

void SCTerrainWork::_bind_methods() {
	const StringName &class_name = get_class_static();
	ClassDB::bind_static_method(class_name, D_METHOD("place_things", "ground", "side", "step", "per_m2", "seed", "keep", "lowest", "steepest", "clustered"),
			&SCTerrainWork::place_things);
	ClassDB::bind_static_method(
			class_name, D_METHOD("pack_things", "places", "scale_by", "sink", "colour", "dimmest", "spread", "palette", "piece"), &SCTerrainWork::pack_things);
	ClassDB::bind_static_method(class_name, D_METHOD("solid_faces", "places", "trunk_radius", "trunk_height", "boulder_size"), &SCTerrainWork::solid_faces);
}
