// The compiled runtime of Swing: a pendulum that the world may get in the way of.

#include "action/add_kind.hpp"
#include "action/shared_verbs.hpp"
#include "character/body_sides.hpp"
#include "character/gravity.hpp"
#include "kinds/physics/swing.hpp"
#include "machine/native_names.hpp"
#include "steering/walking.hpp"

#include <godot_cpp/classes/line2d.hpp>

namespace {

using Kind = SCSwingAction;

struct Names {
	StringName length = "length";
	StringName first_length = "first_length";
	StringName point = "point";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// How fast a rope that is too long is reeled in, in metres a second.
constexpr double REELS_IN = 12.0;
// A point that is farther on than this, in metres a second, was put there and did not swing there.
constexpr double FASTEST_POINT = 50.0;
constexpr double SHORTEST_ROPE = 0.01;
// The share of its length below which a rope hangs loose.
constexpr double TAUT = 0.999;

double sound_or(double number, double otherwise) {
	return Math::is_finite(number) ? number : otherwise;
}

// Where the rope hangs from: a place, or nil, and then what is wrong.
Variant point_of(SCMachineBase *machine, const Kind *kind, const Node *body, Kind::Fault &fault) {
	Variant held;
	if (!kind->point_variable.is_empty()) {
		held = machine->get_value(kind->point_variable, Variant());
		fault = Kind::NO_NODE_IN_VARIABLE;
	} else if (kind->point_path.is_empty()) {
		fault = Kind::NOTHING_PICKED;
		return Variant();
	} else {
		held = machine->node_at(kind->point_path);
		fault = Kind::NO_NODE;
	}
	if (held.get_type() == Variant::OBJECT) {
		const Node *node = Object::cast_to<Node>(held.get_validated_object());
		held = node != nullptr && node->is_inside_tree() ? places::position_of(node) : Variant();
	}
	if (held.get_type() != Variant::VECTOR2 && held.get_type() != Variant::VECTOR3) {
		return Variant();
	}
	if ((held.get_type() == Variant::VECTOR2) != places::is_2d(body)) {
		fault = Kind::OTHER_SIDE;
		return Variant();
	}
	return held;
}

// What is held of a direction, sideways alone where up and down climb.
Vector2 pushed(const CharacterBody2D *, const Variant &direction) {
	return Vector2(walking::direction_in_2d(direction).x, 0.0f);
}
Vector3 pushed(const CharacterBody3D *, const Variant &direction) {
	if (walking::is_in_3d(direction)) {
		return walking::direction_in_3d(direction);
	}
	const Vector2 flat = walking::direction_in_2d(direction);
	return Vector3(flat.x, 0.0f, flat.y);
}

template <class Body>
struct Swinging {
	using Vector = decltype(std::declval<Body>().get_velocity());

	SCMachineBase *machine;
	Kind *kind;
	Body *body;
	Dictionary slot;
	double delta;
	double metre = walking::is_2d(body) ? places::PIXELS_PER_METRE : 1.0;

	static Vector no_longer_than_1(const Vector &vector) { return vector.length_squared() > 1.0f ? vector.normalized() : vector; }

	double climbed(double length, const Variant &direction) const {
		if (!walking::is_2d(body) || !(kind->climb_speed > 0.0)) {
			return length;
		}
		const double first = slot[names().first_length];
		const double most = kind->longest > 0.0 ? kind->longest : first;
		const double down = CLAMP(double(walking::direction_in_2d(direction).y), -1.0, 1.0);
		const double next = length + down * kind->climb_speed * delta;
		// A rope that was caught short of the bounds is not made longer by them.
		return down < 0.0 ? MIN(length, MAX(next, kind->shortest)) : MAX(length, MIN(next, most));
	}

	Vector pulled(Vector velocity, const Vector &outward, const Variant &direction) const {
		velocity -= body->get_up_direction() * real_t(gravity::scaled(body, sound_or(kind->gravity, 0.0)) * delta);
		const Vector push = no_longer_than_1(pushed(body, direction));
		if (push.is_finite()) {
			velocity += bodies::without(push, outward) * real_t(sound_or(kind->pump, 0.0) * delta);
		}
		velocity *= real_t(Math::pow(1.0 - CLAMP(sound_or(kind->slows_down, 0.0), 0.0, 1.0), delta));
		const double speed = double(velocity.length());
		return kind->top_speed > 0.0 && speed > kind->top_speed ? velocity * real_t(kind->top_speed / speed) : velocity;
	}

	// The point's own speed.
	Vector point_moves(const Vector &point) const {
		const Variant before = slot.get(names().point, Variant());
		if (before.get_type() == Variant::NIL) {
			return Vector();
		}
		const Vector moves = (point - Vector(before)) / real_t(delta);
		return double(moves.length()) <= FASTEST_POINT * metre ? moves : Vector();
	}

	void step(const Vector &point) {
		const Variant direction = values::value_of(machine, kind->direction, kind->direction_variable);
		const Vector point_speed = point_moves(point);
		const double length = MAX(climbed(double(slot[names().length]), direction), SHORTEST_ROPE * metre);
		slot[names().length] = length;
		slot[names().point] = point;

		// All of this is seen from the point.
		const Vector here = body->get_global_position();
		Vector offset = here - (point - point_speed * real_t(delta));
		if (offset.is_zero_approx()) {
			offset = -body->get_up_direction() * real_t(SHORTEST_ROPE * metre);
		}
		Vector outward = offset.normalized();
		const double distance = double(offset.length());
		Vector velocity = pulled(body->get_velocity() - point_speed, outward, direction);
		if (!velocity.is_finite()) {
			velocity = Vector();
		}
		Vector goal = offset + velocity * real_t(delta);
		// Reeled in rather than torn there.
		const double bound = MAX(length, distance - MAX(REELS_IN * metre, kind->climb_speed) * delta);
		if (kind->stiff || double(goal.length()) > bound) {
			if (kind->stiff || distance >= length * TAUT) {
				// Along the arc, which a straight step would leave a little more each time.
				const Vector tangent = bodies::without(velocity, outward);
				const double speed = double(tangent.length());
				const double angle = speed * delta / MAX(distance, SHORTEST_ROPE * metre);
				const Vector ahead = tangent.normalized();
				const Vector turned = outward * real_t(Math::cos(angle)) + ahead * real_t(Math::sin(angle));
				const Vector onward = ahead * real_t(Math::cos(angle)) - outward * real_t(Math::sin(angle));
				const double stiff_length = distance < length ? MIN(length, distance + REELS_IN * metre * delta) : bound;
				goal = turned * real_t(kind->stiff ? stiff_length : bound);
				velocity = onward * real_t(speed);
			} else {
				goal = goal.normalized() * real_t(bound);
				outward = goal.normalized();
				velocity -= outward * MAX(velocity.dot(outward), real_t(0.0));
			}
		}
		const Vector onward = velocity + point_speed;
		body->set_velocity((goal - offset) / real_t(delta) + point_speed);
		const ObjectID id = ObjectID(body->get_instance_id());
		if (!machine->move_character(body, false, 0.0, delta) || ObjectDB::get_instance(id) == nullptr) {
			return;
		}
		if (body->get_slide_collision_count() == 0) {
			body->set_velocity(onward);
		} else {
			lose_outward(point, length);
		}
	}

	// What it hit has a say in its speed, but the rope keeps the last word.
	void lose_outward(const Vector &point, double length) const {
		const Vector offset = body->get_global_position() - point;
		const Vector velocity = body->get_velocity();
		const Vector outward = offset.normalized();
		const real_t radial = velocity.dot(outward);
		if (double(offset.length()) >= length * TAUT && (radial > 0.0f || kind->stiff)) {
			body->set_velocity(velocity - outward * radial);
		}
	}
};

class Swing : public SCNativeAction {
	static Line2D *line_of(SCMachineBase *machine, const Kind *kind) {
		return kind->rope_line_path.is_empty() ? nullptr : Object::cast_to<Line2D>(machine->node_at(kind->rope_line_path));
	}

	static void draw(Line2D *line, const Vector2 &from, const Vector2 &to) {
		if (!line->is_inside_tree() || line->get_global_transform().determinant() == 0.0f) {
			return;
		}
		if (line->get_point_count() != 2) {
			line->clear_points();
			line->add_point(Vector2());
			line->add_point(Vector2());
		}
		line->set_point_position(0, line->to_local(from));
		line->set_point_position(1, line->to_local(to));
	}

	static void draw_rope(SCMachineBase *machine, const Kind *kind, const Node *body, const Variant &point) {
		Line2D *line = line_of(machine, kind);
		const Node2D *body_2d = Object::cast_to<Node2D>(body);
		if (line != nullptr && body_2d != nullptr) {
			draw(line, body_2d->get_global_position(), places::as_vector2(point));
		}
	}

	// False, and told why, when it cannot hang there.
	static bool catches(SCMachineBase *machine, Kind *kind, int index) {
		const StillHere here(machine);
		Node *node = values::node_of(machine, kind->body_path);
		if (!bodies::is_character(node)) {
			verbs::say<&Kind::warn_swing>(kind, machine, index, int(node != nullptr ? Kind::NO_CHARACTER : Kind::NO_BODY), node);
			return false;
		}
		Kind::Fault fault = Kind::NOTHING_PICKED;
		const Variant point = point_of(machine, kind, node, fault);
		if (point.get_type() == Variant::NIL) {
			verbs::say<&Kind::warn_swing>(kind, machine, index, int(fault), node);
			return false;
		}
		const double set_length = sound_or(values::number_of(machine, kind->rope_length, kind->rope_length_variable), 0.0);
		const double distance = places::distance_between(places::position_of(node), point);
		const double length = set_length > 0.0 ? set_length : sound_or(distance, 0.0);
		Dictionary slot = machine->slot(index);
		slot[names().length] = length;
		slot[names().first_length] = length;
		slot.erase(names().point);
		if (!kind->rope_line_path.is_empty() && (line_of(machine, kind) == nullptr || !places::is_2d(node))) {
			verbs::say<&Kind::warn_swing>(kind, machine, index, int(places::is_2d(node) ? Kind::NO_LINE : Kind::LINE_IN_3D), node);
			return bool(here);
		}
		draw_rope(machine, kind, node, point);
		return true;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		Kind *kind = as_kind<Kind>(action);
		const bool hangs = kind != nullptr && catches(machine, kind, index);
		if (here && !hangs) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		Kind *kind = as_kind<Kind>(action);
		if (kind == nullptr || !(delta > 0.0)) {
			return;
		}
		Node *node = values::node_of(machine, kind->body_path);
		Kind::Fault fault = Kind::NOTHING_PICKED;
		const Variant point = bodies::is_character(node) ? point_of(machine, kind, node, fault) : Variant();
		// What it hung from is gone, and so is the rope.
		if (point.get_type() == Variant::NIL) {
			machine->finish(index);
			return;
		}
		if (!node->is_inside_tree()) {
			return;
		}
		const StillHere here(machine);
		const ObjectID id = ObjectID(node->get_instance_id());
		bodies::visit(node, [&](auto *body) {
			using Body = std::remove_pointer_t<decltype(body)>;
			using Vector = decltype(body->get_velocity());
			Swinging<Body>{ machine, kind, body, machine->slot(index), delta }.step(Vector(point));
		});
		if (here && ObjectDB::get_instance(id) != nullptr) {
			draw_rope(machine, kind, node, point);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *action, int) override {
		Kind *kind = as_kind<Kind>(action);
		Line2D *line = kind != nullptr ? line_of(machine, kind) : nullptr;
		if (line != nullptr) {
			line->clear_points();
		}
	}
};

const AddKinds added = {
	add_kind<SCSwingAction, Swing>(),
};

} // namespace
