// The bullets themselves: their shape, and keeping them out of the physics while they fly.

#include "action/shared_verbs.hpp"
#include "space/bullet_bounds.hpp"
#include "space/bullet_sweeps.hpp"

namespace bullet_sweeps {

namespace {

Transform2D without_place(const Node2D *node) {
	return Transform2D(0.0f, node->get_scale(), 0.0f, Vector2());
}
Transform3D without_place(const Node3D *node) {
	return Transform3D(Basis::from_scale(node->get_scale()), Vector3());
}

double largest_scale(const Transform2D &transform) {
	return MAX(double(transform[0].length()), double(transform[1].length()));
}
double largest_scale(const Transform3D &transform) {
	return MAX(double(transform.basis.get_column(0).length()),
			MAX(double(transform.basis.get_column(1).length()), double(transform.basis.get_column(2).length())));
}

bool has_volume(const Transform2D &transform) {
	return !Math::is_zero_approx(transform.determinant());
}
bool has_volume(const Transform3D &transform) {
	return !Math::is_zero_approx(transform.basis.determinant());
}

Vector2 place_in(const Transform2D &transform) {
	return transform[2];
}
Vector3 place_in(const Transform3D &transform) {
	return transform.origin;
}

// The first shape of the bullet that is switched on and can be swept.
template <class Side>
void read_shape_on(Flight &flight, Node *bullet, typename Side::Transform &from_bullet) {
	using Transform = typename Side::Transform;
	auto *collider = verbs::first_of<typename Side::Collider>(bullet);
	flight.mask = queries::EVERY_LAYER;
	if (collider == nullptr) {
		return;
	}
	flight.mask = int64_t(collider->get_collision_mask());
	Transform of_collider;
	for (Node *at = collider; at != nullptr && at != bullet; at = at->get_parent()) {
		if (auto *placed = Object::cast_to<typename Side::Placed>(at)) {
			of_collider = placed->get_transform() * of_collider;
		}
	}
	if (auto *top = Object::cast_to<typename Side::Placed>(bullet)) {
		of_collider = without_place(top) * of_collider;
	}
	for (const int32_t owner : collider->get_shape_owners()) {
		if (collider->is_shape_owner_disabled(uint32_t(owner)) || collider->shape_owner_get_shape_count(uint32_t(owner)) < 1) {
			continue;
		}
		const Ref<typename Side::Shape> shape = collider->shape_owner_get_shape(uint32_t(owner), 0);
		const Transform transform = of_collider * collider->shape_owner_get_transform(uint32_t(owner));
		const double reach = shape.is_valid() ? reach_of<Side>(shape.ptr()) * largest_scale(transform) : 0.0;
		if (!(reach > 0.0) || !(reach < FARTHEST) || !has_volume(transform)) {
			continue;
		}
		flight.shape = shape;
		flight.shape_rid = shape->get_rid();
		flight.radius = reach + double(place_in(transform).length());
		from_bullet = transform;
		return;
	}
}

template <class Side>
void take_out(Node *bullet) {
	auto *collider = verbs::first_of<typename Side::Collider>(bullet);
	if (collider == nullptr) {
		return;
	}
	// It hears of each move only to tell the physics.
	collider->set_notify_transform(false);
	if (Object::cast_to<typename Side::Area>(collider) != nullptr) {
		Side::Server::get_singleton()->area_set_space(collider->get_rid(), RID());
	} else {
		Side::Server::get_singleton()->body_set_space(collider->get_rid(), RID());
	}
}

} // namespace

void read_shape(Flight &flight, Node *bullet) {
	if (flight.side == spots::IN_2D) {
		read_shape_on<In2D>(flight, bullet, flight.shape_2d);
	} else {
		read_shape_on<In3D>(flight, bullet, flight.shape_3d);
	}
}

void take_out_of_physics(Node *bullet) {
	take_out<In2D>(bullet);
	take_out<In3D>(bullet);
}

void give_back_to_physics(Node *bullet) {
	if (auto *collider_2d = verbs::first_of<CollisionObject2D>(bullet)) {
		collider_2d->set_notify_transform(true);
	}
	if (auto *collider_3d = verbs::first_of<CollisionObject3D>(bullet)) {
		collider_3d->set_notify_transform(true);
	}
}

} // namespace bullet_sweeps
