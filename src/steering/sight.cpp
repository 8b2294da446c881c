#include "steering/sight.hpp"

#include "action/places.hpp"
#include "action/sc_native_actions.hpp"
#include "character/body_keys.hpp"
#include "character/body_sides.hpp"
#include "steering/outlines.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/physics_direct_space_state2d.hpp>
#include <godot_cpp/classes/physics_direct_space_state3d.hpp>
#include <godot_cpp/classes/physics_ray_query_parameters2d.hpp>
#include <godot_cpp/classes/physics_ray_query_parameters3d.hpp>
#include <godot_cpp/classes/world2d.hpp>
#include <godot_cpp/classes/world3d.hpp>

#include <optional>

namespace sight {

namespace {

// The eye sits so far up from the middle of a 3D character to its top.
constexpr real_t EYE_UP = 0.8f;
// How far from the middle of a target to its edge the other points lie that are tried.
constexpr real_t NEAR_THE_EDGE = 0.85f;
// What reaches no farther than this from its middle, in metres, is small: one point tells whether it can be seen.
constexpr real_t SMALL = 0.3f;
// Nearer than this, in metres, there is no direction to look in.
constexpr real_t TOUCHING = 0.01f;

enum View { HIDDEN, CLEAR, UNKNOWN, NO_MORE_RAYS };

Vector3 flat(const Vector2 &place) {
	return Vector3(place.x, place.y, 0.0f);
}
Vector2 flat(const Vector3 &place) {
	return Vector2(place.x, place.y);
}

struct World2 {
	using Placed = Node2D;
	using Ray = PhysicsRayQueryParameters2D;
	static constexpr real_t METRE = real_t(places::PIXELS_PER_METRE);
	static constexpr int MOST_POINTS = 3;

	static Ref<World2D> of(const Node2D *node) { return node->get_world_2d(); }
	static Vector2 native(const Vector3 &place) { return flat(place); }
	static Vector3 middle_of(const Node2D *node, const AABB &outline) { return flat(node->get_global_transform().xform(flat(outline.get_center()))); }

	static void aim(const Node2D *body, const AABB &, const Vector3 &eye_offset, Vector3 &eye, Vector3 &forward) {
		const Transform2D at = body->get_global_transform();
		Vector2 way = at.columns[0].normalized();
		const bool faces_left = body->has_meta(BodyKeys::shared().faces_left);
		if (faces_left || body->has_meta(BodyKeys::shared().side_on)) {
			way = faces_left && body->get_meta(BodyKeys::shared().faces_left).booleanize() ? Vector2(-1, 0) : Vector2(1, 0);
		}
		forward = flat(way);
		eye += flat(at.basis_xform(flat(eye_offset)));
	}
	static Vector3 side_of(const Vector3 &way) { return Vector3(-way.y, way.x, 0.0f); }
	static Vector3 at_edge(const Node2D *node, const Vector3 &toward, const Vector3 &half) {
		const Transform2D at = node->get_global_transform();
		const Vector2 own = flat(toward).rotated(-at.get_rotation()) * flat(half) * NEAR_THE_EDGE;
		return flat(at.basis_xform(own));
	}
};

struct World3 {
	using Placed = Node3D;
	using Ray = PhysicsRayQueryParameters3D;
	static constexpr real_t METRE = 1.0f;
	static constexpr int MOST_POINTS = 5;

	static Ref<World3D> of(const Node3D *node) { return node->get_world_3d(); }
	static Vector3 native(const Vector3 &place) { return place; }
	static Vector3 middle_of(const Node3D *node, const AABB &outline) { return node->get_global_transform().xform(outline.get_center()); }

	static void aim(const Node3D *body, const AABB &outline, const Vector3 &eye_offset, Vector3 &eye, Vector3 &forward) {
		const Basis basis = body->get_global_transform().basis;
		forward = -basis.get_column(2).normalized();
		eye += basis.xform(Vector3(0.0f, outline.size.y * 0.5f * EYE_UP, 0.0f) + eye_offset);
	}
	static Vector3 side_of(const Vector3 &way) { return Vector3(-way.z, 0.0f, way.x); }
	static Vector3 at_edge(const Node3D *node, const Vector3 &toward, const Vector3 &half) {
		const Basis basis = node->get_global_transform().basis;
		if (Math::is_zero_approx(basis.determinant())) {
			return Vector3();
		}
		return basis.xform(basis.orthonormalized().inverse().xform(toward) * half * NEAR_THE_EDGE);
	}
};

// A body belongs to what it carries, such as a hurt box that is looked for, unless it is the ground that everything stands on.
bool is_part_of(Node *collider, Node *node) {
	if (collider == nullptr || collider == node || node->is_ancestor_of(collider)) {
		return true;
	}
	return bodies::is_character(collider) && collider->is_ancestor_of(node);
}

template <class World>
class Look {
	using Placed = typename World::Placed;

	const Placed *body;
	Array row;
	const uint64_t frame = Engine::get_singleton()->get_physics_frames();
	const AABB own_outline = outlines::of(body, frame);
	const Vector3 middle = World::middle_of(body, own_outline);
	const Ref<typename World::Ray> ray;
	const real_t widest;
	const uint32_t blocked_by;
	const Vector3 eye_offset;
	const int64_t points;
	const int64_t rays_left;
	bool has_aimed = false;
	Vector3 eye;
	Vector3 forward;
	decltype(World::of(body)) world;

	bool is_there(const Placed *node) {
		if (node == nullptr || !node->is_inside_tree() || !node->is_visible_in_tree()) {
			return false;
		}
		if (world.is_null()) {
			world = World::of(body);
		}
		return World::of(node) == world;
	}

	// Only once somebody is near enough.
	void aim() {
		has_aimed = true;
		eye = middle;
		World::aim(body, own_outline, eye_offset, eye, forward);
		if (ray.is_valid()) {
			ray->set_collision_mask(blocked_by);
			ray->set_from(World::native(eye));
		}
	}

	// To either side as it is seen from the eye, then up and down. Each lies within a ball that fills the box around its shapes.
	Vector3 point_at_edge(const Placed *node, int number, const Vector3 &half, const Vector3 &around) const {
		Vector3 toward = number >= 3 ? Vector3(0, 1, 0) : World::side_of(around - eye).normalized();
		if (number % 2 == 0) {
			toward = -toward;
		}
		return around + World::at_edge(node, toward, half);
	}

	// Whether nothing but the node itself stands between the eye and one of its points, as far as that is known.
	View view_past_walls(Placed *node, const AABB &outline, const Vector3 &place) {
		if (blocked_by == 0) {
			return CLEAR;
		}
		if (point > 0 && is_part_of(Object::cast_to<Node>(row[HIT].get_validated_object()), node)) {
			return CLEAR;
		}
		const Vector3 half = outline.size * 0.5f;
		const bool is_small = half[half.max_axis_index()] <= SMALL * World::METRE;
		const int count = is_small ? 1 : int(CLAMP(points, int64_t(1), int64_t(World::MOST_POINTS)));
		auto *space = world.is_valid() ? world->get_direct_space_state() : nullptr;
		if (point >= count || space == nullptr || ray.is_null()) {
			return HIDDEN;
		}
		if (rays_cast >= rays_left) {
			return NO_MORE_RAYS;
		}
		ray->set_to(World::native(point == 0 ? place : point_at_edge(node, point, half, place)));
		row[SPACE] = space;
		rays_cast++;
		point++;
		return UNKNOWN;
	}

public:
	int point;
	int64_t rays_cast;
	real_t distance = 0.0f;

	Look(const Placed *of_body, const Array &of_row) :
			body(of_body), row(of_row), ray(row[RAY]), widest(real_t(double(row[WIDEST]))), blocked_by(uint32_t(int64_t(row[BLOCKED_BY]))),
			eye_offset(row[EYE_OFFSET]), points(row[POINTS]), rays_left(row[RAYS_LEFT]), point(int(int64_t(row[POINT]))), rays_cast(row[RAYS_CAST]) {}

	bool has_a_place() const { return middle.is_finite(); }

	View view_of(Node *somebody, real_t within) {
		auto *node = Object::cast_to<Placed>(somebody);
		if (node == body || !is_there(node)) {
			return HIDDEN;
		}
		const AABB outline = outlines::of(node, frame);
		const Vector3 place = World::middle_of(node, outline);
		const Vector3 way = place - middle;
		distance = way.length();
		// What is no number is not below any.
		if (!(distance <= within)) {
			return HIDDEN;
		}
		if (distance <= TOUCHING * World::METRE) {
			return CLEAR;
		}
		if (!has_aimed) {
			aim();
		}
		return forward.dot(way) < widest * distance ? HIDDEN : view_past_walls(node, outline, place);
	}
};

template <class World>
Answer look_from(const typename World::Placed *body, Array row) {
	Look<World> eyes(body, row);
	if (!eyes.has_a_place()) {
		return OVER;
	}
	Node *now = Object::cast_to<Node>(row[NOW].get_validated_object());
	std::optional<Array> others;
	if (row[OTHERS].get_type() == Variant::ARRAY) {
		others.emplace(row[OTHERS]);
	}
	const int64_t count = others ? others->size() : 0;
	double within = row[DISTANCE];
	Answer answer = OVER;
	int64_t at = row[AT];
	for (; answer == OVER && at < count; at++) {
		Node *node = at < 0 ? now : Object::cast_to<Node>((*others)[at].get_validated_object());
		if (node == nullptr || (at >= 0 && node == now)) {
			continue;
		}
		const View view = eyes.view_of(node, real_t(within));
		if (view == UNKNOWN || view == CLEAR) {
			row[PLACE] = Object::cast_to<typename World::Placed>(node)->get_global_position();
		}
		if (view == UNKNOWN || view == NO_MORE_RAYS) {
			answer = view == UNKNOWN ? CAST_A_RAY : NO_RAYS_LEFT;
			break;
		}
		eyes.point = 0;
		if (view == CLEAR) {
			row[SEEN] = node;
			within = eyes.distance;
			if (at < 0) {
				break;
			}
		} else if (at < 0 && !others) {
			answer = WHO_ELSE;
			at = 0;
			break;
		}
	}
	row[AT] = at;
	row[POINT] = eyes.point;
	row[DISTANCE] = within;
	row[RAYS_CAST] = eyes.rays_cast;
	return answer;
}

Answer look_on(Array row) {
	if (int64_t(row[POINT]) < 0) {
		row[POINT] = 0;
		row[AT] = -1;
		row[SEEN] = Variant();
		row[DISTANCE] = row[RANGE];
		row[RAYS_CAST] = 0;
	}
	const Object *body = row[BODY].get_validated_object();
	if (const auto *body_2d = Object::cast_to<Node2D>(body)) {
		return body_2d->is_inside_tree() ? look_from<World2>(body_2d, row) : OVER;
	}
	const auto *body_3d = Object::cast_to<Node3D>(body);
	return body_3d != nullptr && body_3d->is_inside_tree() ? look_from<World3>(body_3d, row) : OVER;
}

} // namespace

Variant look(const Array &row) {
	return int64_t(row.size() == ROW_SIZE ? look_on(row) : OVER);
}

void add_helpers() {
	SCNativeActions::add_helper("perception_look", &look);
}

} // namespace sight
