#include "character/body_sweeps.hpp"

#include "character/in_physics.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/kinematic_collision2d.hpp>
#include <godot_cpp/classes/kinematic_collision3d.hpp>
#include <godot_cpp/core/math.hpp>

namespace sweeps {

namespace {

// The answers are written into the same two objects over and over.
struct Answers {
	Ref<KinematicCollision2D> in_2d = memnew(KinematicCollision2D);
	Ref<KinematicCollision3D> in_3d = memnew(KinematicCollision3D);
};

// A floor of just the steepest angle is one.
constexpr double SLACK = 0.01;

template <class Body, class Vector, class Answer>
Sweep<Vector> ask(Body *body, const Vector &offset, const Vector &motion, const Answer &answer) {
	Sweep<Vector> found;
	found.travel = motion;
	if (!in_physics(body)) {
		return found;
	}
	auto from = body->get_global_transform();
	from.set_origin(from.get_origin() + offset);
	found.is_blocked = body->test_move(from, motion, answer);
	if (found.is_blocked && answer->get_travel().is_finite()) {
		found.travel = answer->get_travel();
		found.normal = answer->get_normal();
		found.point = answer->get_position();
	}
	return found;
}

template <class Body, class Vector>
bool is_level_enough(const Body *body, const Vector &normal) {
	return double(normal.dot(body->get_up_direction())) >= Math::cos(double(body->get_floor_max_angle()) + SLACK);
}

} // namespace

Sweep<Vector2> sweep(CharacterBody2D *body, const Vector2 &offset, const Vector2 &motion) {
	return ask(body, offset, motion, NativeNames::of<Answers>().in_2d);
}

Sweep<Vector3> sweep(CharacterBody3D *body, const Vector3 &offset, const Vector3 &motion) {
	return ask(body, offset, motion, NativeNames::of<Answers>().in_3d);
}

bool is_floor(const CharacterBody2D *body, const Vector2 &normal) {
	return is_level_enough(body, normal);
}

bool is_floor(const CharacterBody3D *body, const Vector3 &normal) {
	return is_level_enough(body, normal);
}

} // namespace sweeps
