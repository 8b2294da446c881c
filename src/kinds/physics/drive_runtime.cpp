// The compiled runtime of Drive.

#include "action/add_kind.hpp"
#include "action/shared_verbs.hpp"
#include "character/body_keys.hpp"
#include "character/body_sides.hpp"
#include "character/smoothing.hpp"
#include "kinds/physics/drive.hpp"
#include "kinds/physics/drive_speed.hpp"
#include "kinds/physics/drive_visuals.hpp"
#include "steering/walking.hpp"

namespace {

using Kind = SCDriveAction;
using drive_speed::Wish;

// Slower than this it stands, in metres a second.
constexpr double STANDS = 0.01;
// Something else has changed its velocity when it is off by more than this share of Top Speed.
constexpr double OWN_WORK = 0.001;
// A vehicle's wheels steer all the way in this many seconds.
constexpr double STEERS_IN = 0.15;
// The speed below which the pedal that brakes drives, in metres a second.
constexpr double TURNS_ROUND = 0.5;

// What is told of a step once it is over.
struct Told {
	double speed = 0.0;
	double slide = 0.0;
	double lost = 0.0;
};

Vector2 ahead_of(const CharacterBody2D *body) {
	return Vector2(1, 0).rotated(real_t(body->get_global_rotation()));
}
Vector3 ahead_of(const Node3D *body) {
	const Vector3 ahead = -body->get_global_transform().basis.get_column(2);
	return ahead.is_zero_approx() ? Vector3(0, 0, -1) : ahead.normalized();
}
void turn_right(CharacterBody2D *body, double angle) {
	body->rotate(real_t(angle));
}
void turn_right(CharacterBody3D *body, double angle) {
	body->rotate_y(real_t(-angle));
}

template <class Body>
struct Driving {
	using Vector = decltype(std::declval<Body>().get_velocity());

	SCMachineBase *machine;
	Kind *kind;
	Body *body;
	double delta;
	Wish wish;
	double metre = walking::is_2d(body) ? places::PIXELS_PER_METRE : 1.0;
	Vector up = body->get_up_direction();

	// In 2D it is seen from above, and there is no up.
	static Vector2 level(const Vector2 &vector, const Vector2 &) { return vector; }
	static Vector3 level(const Vector3 &vector, const Vector3 &up) { return bodies::without(vector, up); }
	Vector level(const Vector &vector) const { return level(vector, up); }

	Vector heading() const {
		const Vector ahead = level(ahead_of(body));
		return ahead.is_zero_approx() ? ahead_of(body) : ahead.normalized();
	}

	// The way it travels while it goes forward; backward it is the other way round.
	Vector travel_or(const Vector &otherwise) const {
		const Variant held = body->get_meta(DriveKeys::shared().travel, Variant());
		if (held.get_type() != Variant(otherwise).get_type()) {
			return otherwise;
		}
		const Vector travel = level(Vector(held));
		return travel.is_finite() && !travel.is_zero_approx() ? travel.normalized() : otherwise;
	}

	// From what it really goes at: as it begins, and when something else has changed it meanwhile.
	double taken_up(const Vector &velocity, Vector &travel) const {
		const Vector ahead = heading();
		if (double(velocity.length()) < STANDS * metre) {
			travel = ahead;
			return 0.0;
		}
		const bool backward = velocity.dot(ahead) < 0.0f;
		travel = velocity.normalized() * real_t(backward ? -1.0 : 1.0);
		return double(velocity.length()) * (backward ? -1.0 : 1.0);
	}

	void begin() {
		const DriveKeys &keys = DriveKeys::shared();
		const bool goes_on = body_keys::truth(body, keys.left_moving);
		body->remove_meta(keys.left_moving);
		Vector travel = heading();
		const double speed = taken_up(level(body->get_velocity()), travel);
		if (!goes_on || !body->has_meta(keys.speed)) {
			body->set_meta(keys.speed, speed);
			body->set_meta(keys.last_speed, speed);
			body->set_meta(keys.travel, travel);
		}
	}

	void come_round(Vector2 &travel, const Vector2 &ahead) const { travel = ahead; }
	void come_round(Vector3 &travel, const Vector3 &ahead) const {
		const double grip = MAX(drive_speed::sound(wish.handbrake ? kind->handbrake_grip : kind->grip), 0.0);
		const double apart = travel.signed_angle_to(ahead, up);
		travel = travel.rotated(up, real_t(apart * (1.0 - Math::exp(-grip * delta)))).normalized();
	}

	static double sideways(const Vector2 &, const Vector2 &) { return 0.0; }
	static double sideways(const Vector3 &travel, const Vector3 &ahead) { return CLAMP(double(travel.cross(ahead).length()), 0.0, 1.0); }

	static Vector along(const Vector &velocity, const Vector &travel, double speed, const Vector &up_way) {
		if constexpr (std::is_same_v<Vector, Vector2>) {
			return travel * real_t(speed);
		} else {
			return travel * real_t(speed) + up_way * velocity.dot(up_way);
		}
	}

	void step(Told &told) {
		const DriveKeys &keys = DriveKeys::shared();
		const double top = drive_speed::most(kind, false);
		Vector travel = travel_or(heading());
		double speed = drive_speed::sound(body_keys::number(body, keys.speed, 0.0));
		const Vector now = level(body->get_velocity());
		if (now.is_finite() && double((now - travel * real_t(speed)).length()) > MAX(top * OWN_WORK, STANDS * metre)) {
			speed = taken_up(now, travel);
		}

		const double angle = drive_speed::turned(kind, wish, speed, delta);
		if (angle != 0.0) {
			turn_right(body, angle);
		}
		const Vector ahead = heading();
		come_round(travel, ahead);
		told.slide = Math::abs(speed) > STANDS * metre ? sideways(travel, ahead) : 0.0;
		const bool brakes = drive_speed::brakes(wish, speed);
		speed = drive_speed::next(kind, wish, speed, delta);
		speed = Math::move_toward(speed, 0.0, Math::abs(speed) * told.slide * MAX(drive_speed::sound(kind->sideways_scrub), 0.0) * delta);
		body->set_velocity(along(body->get_velocity(), travel, speed, up));

		const ObjectID id = ObjectID(body->get_instance_id());
		const bool moved = machine->move_character(body, !walking::is_2d(body), 0.0, delta);
		if (ObjectDB::get_instance(id) == nullptr) {
			return;
		}
		if (moved) {
			hit(travel, speed, top, told);
		}
		body->set_meta(keys.speed, speed);
		body->set_meta(keys.last_speed, speed);
		body->set_meta(keys.travel, travel);
		told.speed = speed;
		show(speed, brakes);
	}

	// What was in the way has taken some of the speed, or turned it along itself.
	void hit(Vector &travel, double &speed, double top, Told &told) const {
		const Vector left = level(body->get_velocity());
		if (!left.is_finite() || double((left - travel * real_t(speed)).length()) <= MAX(top * OWN_WORK, STANDS * metre)) {
			return;
		}
		const double before = Math::abs(speed);
		const Vector ahead = travel;
		speed = taken_up(left, travel);
		if (double(left.length()) < STANDS * metre) {
			travel = ahead;
		}
		told.lost = MAX(before - Math::abs(speed), 0.0);
	}

	void show(double speed, bool brakes) const {
		const double wheel_angle = Math::deg_to_rad(drive_speed::sound(kind->steering_degrees)) * wish.steer;
		drive_visuals::turn_wheels(body, speed * delta, wheel_angle, delta);
		if (!kind->body_model_path.is_empty() && !walking::is_2d(body)) {
			const double top = drive_speed::most(kind, false);
			const double share = top > 0.0 ? CLAMP(speed / top, -1.0, 1.0) : 0.0;
			const double dip = brakes && Math::abs(speed) > STANDS * metre ? (speed > 0.0 ? 1.0 : -1.0) : 0.0;
			drive_visuals::lean(body, machine->node_at(kind->body_model_path), drive_speed::sound(kind->lean_degrees), wish.steer * share, dip, delta);
		}
	}
};

// How fast it goes the way its engine pushes.
double speed_of(const VehicleBody3D *vehicle) {
	return -double(vehicle->get_linear_velocity().dot(ahead_of(vehicle)));
}

void drive_vehicle(const Kind *kind, VehicleBody3D *vehicle, const Wish &wish, double delta, Told &told) {
	const DriveKeys &keys = DriveKeys::shared();
	const double speed = speed_of(vehicle);
	const double top = drive_speed::most(kind, speed < 0.0);
	const double force = drive_speed::sound(kind->engine_force);
	const double brake = force * MAX(drive_speed::sound(kind->brake_strength), 0.0) * delta;
	const bool brakes = wish.throttle * speed < 0.0 && Math::abs(speed) > TURNS_ROUND;
	const bool too_fast = Math::abs(speed) > top;
	double pedal = brakes ? brake * Math::abs(wish.throttle) : 0.0;
	pedal = wish.handbrake ? brake : pedal;
	// Downhill it would go faster all by itself.
	if (too_fast && top > 0.0) {
		pedal = MAX(pedal, brake * CLAMP((Math::abs(speed) - top) / (top * 0.1), 0.0, 1.0));
	}
	vehicle->set_engine_force(float(pedal > 0.0 || too_fast ? 0.0 : force * wish.throttle));
	vehicle->set_brake(float(pedal));
	const double lock = Math::deg_to_rad(drive_speed::sound(kind->steering_degrees));
	const double goal = -lock * wish.steer * drive_speed::steering_left(kind, speed);
	vehicle->set_steering(float(Math::move_toward(double(vehicle->get_steering()), goal, Math::abs(lock) * delta / STEERS_IN)));
	if (!kind->handbrake_input.is_empty()) {
		const double grip = drive_speed::sound(kind->grip);
		drive_visuals::grip_wheels(vehicle, wish.handbrake && grip > 0.0 ? CLAMP(drive_speed::sound(kind->handbrake_grip) / grip, 0.0, 1.0) : 1.0);
	}
	const Vector3 level = bodies::without(vehicle->get_linear_velocity(), Vector3(0, 1, 0));
	const double all = double(level.length());
	told.speed = speed;
	told.slide = all > STANDS ? CLAMP(double(level.cross(ahead_of(vehicle)).length()) / all, 0.0, 1.0) : 0.0;
	told.lost = MAX(Math::abs(body_keys::number(vehicle, keys.last_speed, speed)) - Math::abs(speed), 0.0);
	vehicle->set_meta(keys.last_speed, speed);
}

class Drive : public SCNativeAction {
	// Null, and told so, when it cannot be driven.
	static Node *driven(SCMachineBase *machine, Kind *kind, int index) {
		Node *node = values::node_of(machine, kind->body_path);
		if (bodies::is_character(node) || Object::cast_to<VehicleBody3D>(node) != nullptr) {
			return node;
		}
		verbs::say<&Kind::warn_drive>(kind, machine, index, node != nullptr ? 0 : 1, node);
		return nullptr;
	}

	static void tell(SCMachineBase *machine, Kind *kind, const Told &told) {
		const StillHere here(machine);
		const double top = drive_speed::most(kind, false);
		const double share = drive_speed::sound(kind->crash_share);
		const bool crashed = share > 0.0 && top > 0.0 && told.lost >= share * top;
		const StringName crash_event = kind->crash_event;
		verbs::keep_each<&Kind::store_speed_in, &Kind::store_slide_in>(machine, kind, { told.speed, told.slide });
		if (!here || !crashed) {
			return;
		}
		verbs::keep_if_named<&Kind::store_crash_in>(machine, kind, told.lost);
		if (here) {
			verbs::send(machine, crash_event, told.lost);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		Kind *kind = as_kind<Kind>(action);
		Node *node = kind != nullptr ? driven(machine, kind, index) : nullptr;
		if (!here) {
			return;
		}
		if (node != nullptr && node->is_inside_tree()) {
			bodies::visit(node, [&](auto *body) { Driving<std::remove_pointer_t<decltype(body)>>{ machine, kind, body, 0.0, Wish() }.begin(); });
			if (const VehicleBody3D *vehicle = Object::cast_to<VehicleBody3D>(node)) {
				node->set_meta(DriveKeys::shared().last_speed, speed_of(vehicle));
			} else if (!kind->body_model_path.is_empty() && Object::cast_to<Node3D>(machine->node_at(kind->body_model_path)) == nullptr) {
				verbs::say<&Kind::warn_drive>(kind, machine, index, 2, node);
			}
		}
		if (here) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		Kind *kind = as_kind<Kind>(action);
		Node *node = kind != nullptr ? driven(machine, kind, index) : nullptr;
		if (node == nullptr || !node->is_inside_tree() || !(delta > 0.0)) {
			return;
		}
		const StillHere here(machine);
		smoothing::smooth(node);
		const Wish wish = drive_speed::wish_of(kind);
		Told told;
		if (VehicleBody3D *vehicle = Object::cast_to<VehicleBody3D>(node)) {
			drive_vehicle(kind, vehicle, wish, delta, told);
		} else {
			bodies::visit(node, [&](auto *body) { Driving<std::remove_pointer_t<decltype(body)>>{ machine, kind, body, delta, wish }.step(told); });
		}
		if (here) {
			tell(machine, kind, told);
		}
	}

	// Nobody is at the wheel any more: it rolls on, or stands straight again.
	void exit(SCMachineBase *machine, SCMachineAction *action, int) override {
		Kind *kind = as_kind<Kind>(action);
		Node *node = kind != nullptr ? values::node_of(machine, kind->body_path) : nullptr;
		if (node == nullptr) {
			return;
		}
		if (VehicleBody3D *vehicle = Object::cast_to<VehicleBody3D>(node)) {
			vehicle->set_engine_force(0.0f);
			vehicle->set_brake(0.0f);
			vehicle->set_steering(0.0f);
			if (vehicle->has_meta(DriveKeys::shared().wheel_grip)) {
				drive_visuals::grip_wheels(vehicle, 1.0);
			}
			return;
		}
		if (Math::abs(body_keys::number(node, DriveKeys::shared().speed, 0.0)) > STANDS) {
			body_keys::keep_true(node, DriveKeys::shared().left_moving);
		}
		if (!kind->body_model_path.is_empty()) {
			drive_visuals::stand_straight(node, machine->node_at(kind->body_model_path));
		}
	}
};

const AddKinds added = {
	add_kind<SCDriveAction, Drive>(),
};

} // namespace
