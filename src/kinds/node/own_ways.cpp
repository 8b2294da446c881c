#include "kinds/node/own_ways.hpp"

#include "action/places.hpp"
#include "action/spaces.hpp"
#include "character/body_keys.hpp"
#include "character/facing_along.hpp"

namespace own_ways {

Transform2D turn_of(const Transform2D &world) {
	const Vector2 front = world[0].normalized();
	if (!spaces::has_a_way_back(world) || !front.is_finite()) {
		return Transform2D();
	}
	const real_t hand = world.determinant() < 0.0f ? -1.0f : 1.0f;
	return Transform2D(front, Vector2(-front.y, front.x) * hand, Vector2());
}

Transform2D turn_of(const CanvasItem *item) {
	Transform2D turn = turn_of(spaces::world_of(item));
	const Node *above = item;
	while (Object::cast_to<CanvasItem>(above) != nullptr && !above->has_meta(BodyKeys::shared().faces_left)) {
		above = above->get_parent();
	}
	if (turn.determinant() > 0.0f && above != nullptr && facing_along::faces_left(above)) {
		turn[0] = -turn[0];
	}
	return turn;
}

Quaternion turn_of(const Node3D *node_3d) {
	const Basis basis = spaces::world_of(node_3d).basis;
	return spaces::has_a_way_back(basis) ? basis.get_rotation_quaternion() : Quaternion();
}

double upright(const Transform2D &turn) {
	const bool is_mirrored_sideways = turn.determinant() < 0.0f && turn[1].y >= 0.0f;
	return is_mirrored_sideways ? (-turn[0]).angle() : turn[0].angle();
}

Variant to_world(const Node *placed, const Variant &vector) {
	if (const CanvasItem *item = Object::cast_to<CanvasItem>(placed)) {
		return turn_of(item).basis_xform(places::as_vector2(vector));
	}
	if (const Node3D *node_3d = Object::cast_to<Node3D>(placed)) {
		return turn_of(node_3d).xform(places::as_vector3(vector));
	}
	return vector;
}

} // namespace own_ways
