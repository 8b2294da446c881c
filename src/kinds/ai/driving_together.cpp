#include "kinds/ai/driving_together.hpp"

#include "character/body_keys.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/variant/array.hpp>

namespace driving_together {

namespace {

// What lies at BodyKeys::drive.
enum Entry { FRAME, DRIVERS, DRIVERS_BEFORE, LEFT_BEHIND, ENTRIES };

Array drive_of(Object *body) {
	const StringName &key = BodyKeys::shared().drive;
	Array drive = body->has_meta(key) ? Array(body->get_meta(key)) : Array();
	if (drive.size() != ENTRIES) {
		drive = Array::make(-1, 0, 0, Variant());
		body->set_meta(key, drive);
	}
	return drive;
}

template <class Vector>
Vector driven(Object *body, Vector velocity, const Vector &direction, double speed) {
	const int64_t now = int64_t(Engine::get_singleton()->get_physics_frames());
	Array drive = drive_of(body);
	bool is_alone = false;
	if (int64_t(drive[FRAME]) != now) {
		drive[DRIVERS_BEFORE] = int64_t(drive[FRAME]) == now - 1 ? int64_t(drive[DRIVERS]) : int64_t(0);
		drive[FRAME] = now;
		drive[DRIVERS] = 0;
		is_alone = int64_t(drive[DRIVERS_BEFORE]) == 1;
	}
	const Variant left_behind = drive[LEFT_BEHIND];
	// Nobody else has touched it: what is left from an earlier direction dies away.
	if (is_alone && left_behind.get_type() == Variant(velocity).get_type() && Vector(left_behind).is_equal_approx(velocity)) {
		velocity = direction * velocity.dot(direction);
	}
	velocity += direction * (real_t(speed) - velocity.dot(direction));
	drive[DRIVERS] = int64_t(drive[DRIVERS]) + 1;
	drive[LEFT_BEHIND] = velocity;
	return velocity;
}

} // namespace

void drive(CharacterBody2D *body, const Vector2 &direction, double speed, bool falls) {
	const Vector2 velocity = body->get_velocity();
	Vector2 next = driven(body, falls ? Vector2(velocity.x, 0.0f) : velocity, direction, speed);
	next.y = falls ? velocity.y : next.y;
	body->set_velocity(next);
}

void drive(CharacterBody3D *body, const Vector3 &direction, double speed, bool) {
	const Vector3 velocity = body->get_velocity();
	Vector3 next = driven(body, Vector3(velocity.x, 0.0f, velocity.z), direction, speed);
	next.y = velocity.y;
	body->set_velocity(next);
}

} // namespace driving_together
