#include "kinds/ai/ground.hpp"

#include "action/places.hpp"
#include "character/body_notes.hpp"
#include "fast_lane/spots.hpp"

#include <godot_cpp/classes/physics_body2d.hpp>
#include <godot_cpp/classes/physics_body3d.hpp>

namespace ground {

double distance(const Node *from, const Node *to) {
	const spots::Side side = spots::side_of(from);
	Vector3 first;
	Vector3 second;
	if (side == spots::IN_3D && spots::side_of(to) == side && spots::read(from, side, first) && spots::read(to, side, second)) {
		return spots::ground_distance(first, second, side);
	}
	return places::distance_between(places::position_of(from), places::position_of(to));
}

Vector2 toward(const CharacterBody2D *body, const Variant &place, bool falls) {
	const Vector2 offset = places::as_vector2(place) - body->get_global_position();
	return falls ? Vector2(SIGN(offset.x), 0.0f) : offset.normalized();
}

Vector3 toward(const CharacterBody3D *body, const Variant &place, bool) {
	const Vector3 offset = places::as_vector3(place) - body->get_global_position();
	return Vector3(offset.x, 0.0f, offset.z).normalized();
}

bool is_plain(const Node *body) {
	return spots::side_of(body) != spots::NOWHERE && Object::cast_to<PhysicsBody2D>(body) == nullptr && Object::cast_to<PhysicsBody3D>(body) == nullptr &&
			body_notes::agent_of(body) == nullptr;
}

} // namespace ground
