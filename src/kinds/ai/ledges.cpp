#include "kinds/ai/ledges.hpp"

#include "action/places.hpp"
#include "character/body_sides.hpp"
#include "character/in_physics.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/kinematic_collision2d.hpp>
#include <godot_cpp/classes/physics_direct_space_state3d.hpp>
#include <godot_cpp/classes/physics_ray_query_parameters3d.hpp>
#include <godot_cpp/classes/world3d.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/typed_array.hpp>

namespace ledges {

namespace {

// In metres. A ray begins so far above the body's own place and looks for the floor so deep.
constexpr real_t ABOVE = 0.3f;
constexpr real_t DEEPEST_FLOOR = 50.0f;
// How far ahead is looked, and how much deeper than its own floor the next may lie, which includes the ray's start.
constexpr real_t AHEAD = 0.5f;
constexpr real_t LEAST_DEPTH = 1.05f;
constexpr real_t NO_WAY = 0.001f;
// The same for 2D, in pixels.
constexpr real_t AHEAD_IN_2D = 16.0f;
constexpr real_t DEPTH_IN_2D = 24.0f;
constexpr double MARGIN = 0.08;

struct RayNames {
	StringName position = "position";
	// Used over and over.
	Ref<PhysicsRayQueryParameters3D> ray;
	TypedArray<RID> excluded;

	RayNames() {
		ray.instantiate();
		excluded.push_back(RID());
	}
};

bool is_ahead_of(CharacterBody3D *body, const Vector3 &goal) {
	const Vector3 up = body->get_up_direction();
	const Vector3 place = body->get_global_position();
	const Vector3 way = bodies::without(goal - place, up);
	PhysicsDirectSpaceState3D *space = body->get_world_3d().is_valid() ? body->get_world_3d()->get_direct_space_state() : nullptr;
	if (!(way.length() >= NO_WAY) || space == nullptr) {
		return false;
	}
	const RayNames &names = NativeNames::of<RayNames>();
	const Ref<PhysicsRayQueryParameters3D> ray = names.ray;
	TypedArray<RID> excluded = names.excluded;
	const RID own = body->get_rid();
	if (RID(excluded[0]) != own) {
		excluded[0] = own;
		ray->set_exclude(excluded);
	}
	ray->set_collision_mask(body->get_collision_mask());

	const Vector3 above = place + up * ABOVE;
	ray->set_from(above);
	ray->set_to(above - up * DEEPEST_FLOOR);
	const Dictionary floor = space->intersect_ray(ray);
	real_t depth = LEAST_DEPTH;
	if (!floor.is_empty()) {
		depth += MAX((place - Vector3(floor[names.position])).dot(up), real_t(0.0));
	}
	const Vector3 from = above + way.normalized() * AHEAD;
	ray->set_from(from);
	ray->set_to(from - up * depth);
	return space->intersect_ray(ray).is_empty();
}

bool is_ahead_of(CharacterBody2D *body, const Vector2 &goal) {
	const real_t side = SIGN(goal.x - body->get_global_position().x);
	if (side == 0.0f) {
		return false;
	}
	if (!in_physics(body)) {
		return false;
	}
	const Vector2 up = body->get_up_direction();
	const Vector2 way = up == Vector2() ? Vector2(side, 0.0f) : Vector2(-up.y, up.x) * side;
	Transform2D ahead = body->get_global_transform();
	ahead.set_origin(ahead.get_origin() + way * AHEAD_IN_2D);
	return !body->test_move(ahead, up * -DEPTH_IN_2D, Ref<KinematicCollision2D>(), MARGIN);
}

} // namespace

bool is_ahead(Node *body, const Variant &goal) {
	if (auto *body_3d = Object::cast_to<CharacterBody3D>(body)) {
		return body_3d->is_on_floor() && is_ahead_of(body_3d, places::as_vector3(goal));
	}
	auto *body_2d = Object::cast_to<CharacterBody2D>(body);
	return body_2d != nullptr && body_2d->is_on_floor() && is_ahead_of(body_2d, places::as_vector2(goal));
}

} // namespace ledges
