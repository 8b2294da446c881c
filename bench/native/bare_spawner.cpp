#include "bare_spawner.hpp"

#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/core/class_db.hpp>

using namespace godot;

void BenchBareSpawner::bring(const Ref<PackedScene> &scene, Node *parent, const PackedVector2Array &places, int64_t metas) {
	ERR_FAIL_COND(scene.is_null() || parent == nullptr);
	const StringName marks[] = { "bench_first", "bench_second" };
	constexpr int64_t MOST_METAS = 2;
	const NodePath maker("/root/Maker");
	for (int64_t i = 0; i < places.size(); i++) {
		Node *made = scene->instantiate();
		if (Node2D *made_2d = Object::cast_to<Node2D>(made)) {
			made_2d->set_position(places[i]);
		} else if (Node3D *made_3d = Object::cast_to<Node3D>(made)) {
			made_3d->set_position(Vector3(places[i].x, 0, places[i].y));
		}
		for (int64_t meta = 0; meta < MIN(metas, MOST_METAS); meta++) {
			made->set_meta(marks[meta], maker);
		}
		parent->add_child(made);
	}
}

void BenchBareSpawner::_bind_methods() {
	ClassDB::bind_method(D_METHOD("bring", "scene", "parent", "places", "metas"), &BenchBareSpawner::bring);
}
