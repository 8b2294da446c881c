// The compiled runtime of Move Character: what it follows becomes a velocity, and the move step does the rest.

#include "action/add_kind.hpp"
#include "action/shared_verbs.hpp"
#include "action/spaces.hpp"
#include "character/body_keys.hpp"
#include "character/body_sides.hpp"
#include "character/facing_along.hpp"
#include "character/gravity.hpp"
#include "character/smoothing.hpp"
#include "kinds/physics/move_character.hpp"
#include "steering/walking.hpp"

#include <godot_cpp/classes/camera3d.hpp>
#include <godot_cpp/classes/viewport.hpp>

namespace {

using Kind = SCMoveCharacterAction;

struct Names {
	StringName arrived = "arrived";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// Shorter than this, a direction seen from above says nothing.
constexpr real_t NO_DIRECTION = 0.001f;

// One update, from reading what it follows to the move.
struct Step {
	SCMachineBase *machine;
	Kind *kind;
	int index;
	double delta;
	StillHere here;

	Step(SCMachineBase *of_machine, Kind *of_kind, int of_index, double of_delta) :
			machine(of_machine), kind(of_kind), index(of_index), delta(of_delta), here(of_machine) {}

	bool is_toward() const { return kind->heading == Kind::TOWARD_A_NODE || kind->heading == Kind::TOWARD_A_PLACE; }

	Variant direction() const { return values::value_of(machine, kind->direction, kind->direction_variable); }

	// Nil when there is nothing to head for, of which the game maker is told unless a variable just holds nothing.
	Variant target() const {
		if (kind->heading == Kind::TOWARD_A_PLACE) {
			return kind->toward_place;
		}
		if (!kind->toward_variable.is_empty()) {
			return places::position_of(Object::cast_to<Node>(machine->get_value(kind->toward_variable, Variant()).get_validated_object()));
		}
		if (kind->toward_path.is_empty()) {
			verbs::say<&Kind::warn_move>(kind, machine, index, 2, Variant());
			return Variant();
		}
		const Node *toward = machine->node_at(kind->toward_path);
		if (toward == nullptr) {
			verbs::say<&Kind::warn_move>(kind, machine, index, 3, Variant());
			return Variant();
		}
		return places::position_of(toward);
	}

	void arrive() {
		Dictionary slot = machine->slot(index);
		if (!slot.get(names().arrived, false).booleanize()) {
			slot[names().arrived] = true;
			verbs::send(machine, kind->arrived_event);
		}
	}

	// The way to the target, as long as 1; zero for none and for one that is reached.
	template <class Vector>
	Vector toward(const Vector &offset) {
		if (double(offset.length()) > kind->stop_within) {
			return offset.normalized();
		}
		arrive();
		return Vector();
	}

	template <class Vector>
	Vector as_told(const Vector &wish) const {
		return kind->heading != Kind::A_VELOCITY && wish.length_squared() > 1.0f ? wish.normalized() : wish;
	}

	Vector2 wish(const CharacterBody2D *body, bool falls) {
		if (is_toward()) {
			const Variant place = target();
			if (place.get_type() == Variant::NIL) {
				return Vector2();
			}
			Vector2 offset = places::as_vector2(place) - body->get_global_position();
			offset.y = falls ? 0.0f : offset.y;
			return toward(offset);
		}
		Vector2 way = walking::direction_in_2d(direction());
		if (kind->space == Kind::LOCAL) {
			way = way.rotated(real_t(body->get_global_rotation()));
		}
		way.y = falls ? 0.0f : way.y;
		return as_told(way);
	}

	// What is right and what is back for the one who looks, on the level.
	static Vector3 on_the_level(const Vector3 &axis) {
		const Vector3 level(axis.x, 0.0f, axis.z);
		return level.length() > NO_DIRECTION ? level.normalized() : Vector3();
	}

	Vector3 seen_by_camera(const CharacterBody3D *body, const Vector3 &way) const {
		const Node3D *camera = nullptr;
		if (!kind->camera_path.is_empty()) {
			camera = Object::cast_to<Node3D>(machine->node_at(kind->camera_path));
		} else if (body->is_inside_tree()) {
			camera = body->get_viewport()->get_camera_3d();
		}
		if (camera == nullptr) {
			return way;
		}
		const Basis basis = spaces::world_of(camera).basis;
		const Vector3 right = on_the_level(basis.get_column(0));
		Vector3 back = on_the_level(basis.get_column(2));
		// It looks straight down or up: what is up in its picture is ahead.
		if (back == Vector3()) {
			back = -on_the_level(basis.get_column(1));
		}
		return right * way.x + back * way.z;
	}

	Vector3 wish(const CharacterBody3D *body, bool falls) {
		if (is_toward()) {
			const Variant place = target();
			if (place.get_type() == Variant::NIL) {
				return Vector3();
			}
			Vector3 offset = places::as_vector3(place) - body->get_global_position();
			offset.y = 0.0f;
			return toward(offset);
		}
		const Variant given = direction();
		const bool has_height = walking::is_in_3d(given);
		if (kind->space == Kind::SIDE_ON) {
			Vector3 way;
			if (has_height) {
				way = walking::direction_in_3d(given);
				way.z = 0.0f;
			} else {
				const Vector2 flat = walking::direction_in_2d(given);
				way = Vector3(flat.x, -flat.y, 0.0f);
			}
			way.y = falls ? 0.0f : way.y;
			return as_told(way);
		}
		Vector3 way;
		if (has_height && kind->space != Kind::CAMERA) {
			way = walking::direction_in_3d(given);
		} else {
			const Vector2 flat = walking::direction_in_2d(given);
			way = Vector3(flat.x, 0.0f, flat.y);
		}
		if (kind->space == Kind::LOCAL) {
			way = spaces::world_of(body).basis.xform(way);
		} else if (kind->space == Kind::CAMERA) {
			way = seen_by_camera(body, way);
		}
		way.y = has_height && !falls ? way.y : 0.0f;
		return as_told(way);
	}

	// Zero takes the wanted speed on the spot.
	template <class Body>
	double gained(const Body *body) const {
		const bool in_the_air = kind->acceleration_in_the_air > 0.0 && !body->is_on_floor();
		const double acceleration = in_the_air ? kind->acceleration_in_the_air : kind->acceleration;
		return acceleration > 0.0 ? acceleration * delta : 0.0;
	}

	Vector2 next_velocity(const CharacterBody2D *body, const Vector2 &wanted, bool falls) const {
		const Vector2 now = body->get_velocity();
		const real_t step = real_t(gained(body));
		if (step <= 0.0f) {
			return falls ? Vector2(wanted.x, now.y) : wanted;
		}
		return falls ? Vector2(Math::move_toward(now.x, wanted.x, step), now.y) : now.move_toward(wanted, step);
	}

	Vector3 next_velocity(const CharacterBody3D *body, const Vector3 &wanted, bool falls) const {
		const Vector3 now = body->get_velocity();
		const real_t step = real_t(gained(body));
		Vector3 next = wanted;
		if (step > 0.0f) {
			const Vector2 level = Vector2(now.x, now.z).move_toward(Vector2(wanted.x, wanted.z), step);
			next = Vector3(level.x, Math::move_toward(now.y, wanted.y, step), level.y);
		}
		next.y = falls ? now.y : next.y;
		next.z = kind->space == Kind::SIDE_ON ? 0.0f : next.z;
		return next;
	}

	void face(CharacterBody2D *body, const Vector2 &way, bool falls) const {
		if (!falls) {
			facing_along::turn_by_script(body, way, facing_along::weight(kind->turn_speed, delta));
		} else if (way.x != 0.0f) {
			facing_along::face_side(body, way.x < 0.0f);
		}
	}
	void face(CharacterBody3D *body, const Vector3 &way, bool) const { facing_along::turn(body, way, facing_along::weight(kind->turn_speed, delta)); }

	template <class Body>
	void leave_word(Body *body, bool falls) const {
		const BodyKeys &keys = BodyKeys::shared();
		if (kind->space == Kind::SIDE_ON && !body->has_meta(keys.side_on)) {
			body->set_meta(keys.side_on, true);
		}
		if (walking::is_2d(body) || body->has_meta(keys.side_on)) {
			body_keys::keep_number(body, keys.corners, falls ? kind->slips_round_corners : 0.0, 0.0);
		}
		body_keys::keep_number(body, keys.hangs_at_top, kind->floats_at_the_top, 1.0);
		body_keys::keep_number(body, keys.walk_gravity, kind->gravity, 0.0);
	}

	// What pulls at this point of a jump: less around its top, more on the way down.
	template <class Body>
	double shaped_gravity(const Body *body) const {
		if (body_keys::is_about(kind->falls_faster_than_it_rises, 1.0) && body_keys::is_about(kind->floats_at_the_top, 1.0)) {
			return kind->gravity;
		}
		const double rising = double(body->get_velocity().dot(body->get_up_direction()));
		double times = rising > 0.0 ? 1.0 : kind->falls_faster_than_it_rises;
		if (Math::abs(rising) < gravity::scaled(body, kind->gravity) * Kind::THE_TOP_LASTS) {
			times *= kind->floats_at_the_top;
		}
		return gravity::of(body, kind->gravity) * times;
	}

	template <class Body>
	void take(Body *body) {
		using Vector = decltype(body->get_velocity());
		const ObjectID id = ObjectID(body->get_instance_id());
		bool falls = walking::really_falls(machine, kind, body, kind->falls);
		const Vector way = wish(body, falls);
		// Arriving may have run a game's code.
		if (!here || ObjectDB::get_instance(id) == nullptr) {
			return;
		}
		const double speed = kind->heading == Kind::A_VELOCITY ? 1.0 : values::number_of(machine, kind->speed, kind->speed_variable);
		body->set_velocity(next_velocity(body, way * real_t(speed), falls));
		if (kind->turn_to_face && way != Vector()) {
			face(body, way, falls);
		}
		falls = walking::really_falls(machine, kind, body, kind->falls);
		leave_word(body, falls);
		machine->move_character(body, falls, shaped_gravity(body), delta, falls ? kind->fastest_fall : 0.0);
	}
};

class MoveCharacter : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *, int index) override {
		machine->slot(index).erase(names().arrived);
		machine->finish(index);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		Kind *kind = as_kind<Kind>(action);
		if (kind == nullptr) {
			return;
		}
		Node *node = values::node_of(machine, kind->body_path);
		smoothing::smooth(node);
		const bool walks = bodies::visit(node, [&](auto *body) { Step(machine, kind, index, delta).take(body); });
		if (!walks) {
			verbs::say<&Kind::warn_move>(kind, machine, index, node != nullptr ? 0 : 1, node);
		}
	}
};

const AddKinds added = {
	add_kind<SCMoveCharacterAction, MoveCharacter>(),
};

} // namespace
