#include "kinds/ai/lines_of_sight.hpp"

#include <godot_cpp/classes/collision_object2d.hpp>
#include <godot_cpp/classes/collision_object3d.hpp>
#include <godot_cpp/classes/physics_direct_space_state2d.hpp>
#include <godot_cpp/classes/physics_direct_space_state3d.hpp>
#include <godot_cpp/classes/physics_ray_query_parameters2d.hpp>
#include <godot_cpp/classes/physics_ray_query_parameters3d.hpp>
#include <godot_cpp/classes/world2d.hpp>
#include <godot_cpp/classes/world3d.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/typed_array.hpp>

namespace lines_of_sight {

namespace {

template <class Body>
TypedArray<RID> solid_ones(const Node *first, const Node *second) {
	TypedArray<RID> found;
	for (const Node *node : { first, second }) {
		if (const auto *body = Object::cast_to<Body>(node)) {
			found.push_back(body->get_rid());
		}
	}
	return found;
}

template <class Space, class Ray, class Vector>
bool hits(Space *space, const Vector &from, const Vector &to, int64_t mask, const TypedArray<RID> &but_for) {
	if (space == nullptr || !from.is_finite() || !to.is_finite()) {
		return true;
	}
	const Ref<Ray> ray = Ray::create(from, to, uint32_t(mask), but_for);
	return !space->intersect_ray(ray).is_empty();
}

} // namespace

bool is_blocked(const Node *from, const Node *to, const Node *but_for, int64_t mask, double eye_height) {
	if (from == nullptr || to == nullptr || !from->is_inside_tree() || !to->is_inside_tree()) {
		return true;
	}
	const auto *from_2d = Object::cast_to<Node2D>(from);
	const auto *to_2d = Object::cast_to<Node2D>(to);
	if (from_2d != nullptr && to_2d != nullptr) {
		const Ref<World2D> world = from_2d->get_world_2d();
		PhysicsDirectSpaceState2D *space = world.is_valid() && world == to_2d->get_world_2d() ? world->get_direct_space_state() : nullptr;
		return hits<PhysicsDirectSpaceState2D, PhysicsRayQueryParameters2D>(
				space, from_2d->get_global_position(), to_2d->get_global_position(), mask, solid_ones<CollisionObject2D>(from, but_for));
	}
	const auto *from_3d = Object::cast_to<Node3D>(from);
	const auto *to_3d = Object::cast_to<Node3D>(to);
	if (from_3d == nullptr || to_3d == nullptr) {
		return true;
	}
	const Vector3 eyes(0.0f, real_t(eye_height), 0.0f);
	const Ref<World3D> world = from_3d->get_world_3d();
	PhysicsDirectSpaceState3D *space = world.is_valid() && world == to_3d->get_world_3d() ? world->get_direct_space_state() : nullptr;
	return hits<PhysicsDirectSpaceState3D, PhysicsRayQueryParameters3D>(
			space, from_3d->get_global_position() + eyes, to_3d->get_global_position() + eyes, mask, solid_ones<CollisionObject3D>(from, but_for));
}

} // namespace lines_of_sight
