// The compiled runtime of Dash: a velocity of its own for a while, as far as it was told and no farther.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/places.hpp"
#include "action/shared_verbs.hpp"
#include "action/spaces.hpp"
#include "action/weak.hpp"
#include "character/body_keys.hpp"
#include "character/body_notes.hpp"
#include "character/body_sides.hpp"
#include "character/facing_along.hpp"
#include "character/smoothing.hpp"
#include "kinds/physics/dash.hpp"
#include "machine/game_clock.hpp"
#include "steering/walking.hpp"

#include <godot_cpp/classes/engine.hpp>

namespace {

using Kind = SCDashAction;

struct Names {
	// The velocity of the dash and the seconds it has left, while it is under way.
	StringName dash = "dash";
	StringName left = "left";
	// How fast it went that way before, and the share of the last step that it took.
	StringName before = "before";
	StringName share = "share";
	// On the body: when it last began to dash, by the game's clock, and the physics frame in which it last did.
	StringName dashed_at = "quillstead_dashed_at";
	StringName dashed_in = "quillstead_dashed_in";
};

const Names &names() {
	return NativeNames::of<Names>();
}

constexpr double SHORTEST = 0.0001;
// Less is what is left over from adding up steps.
constexpr double NO_TIME = 1.0e-6;
// Metres or pixels a second that count as standing still.
constexpr real_t STANDS_STILL = 0.01f;

int64_t frame_now() {
	return int64_t(Engine::get_singleton()->get_physics_frames());
}

Vector2 facing_of(const CharacterBody2D *body) {
	const BodyKeys &keys = BodyKeys::shared();
	if (body->has_meta(keys.side_on) || body->has_meta(keys.faces_left)) {
		return Vector2(facing_along::faces_left(body) ? -1.0f : 1.0f, 0.0f);
	}
	return Vector2(1.0f, 0.0f).rotated(real_t(body->get_global_rotation()));
}
Vector3 facing_of(const CharacterBody3D *body) {
	return -spaces::world_of(body).basis.get_column(2);
}

Vector2 as_direction(const CharacterBody2D *, const Variant &given) {
	return walking::direction_in_2d(given);
}
Vector3 as_direction(const CharacterBody3D *body, const Variant &given) {
	if (walking::is_in_3d(given)) {
		return walking::direction_in_3d(given);
	}
	const Vector2 flat = walking::direction_in_2d(given);
	return body->has_meta(BodyKeys::shared().side_on) ? Vector3(flat.x, -flat.y, 0.0f) : Vector3(flat.x, 0.0f, flat.y);
}

Vector2 as_place(const CharacterBody2D *, const Variant &place) {
	return places::as_vector2(place);
}
Vector3 as_place(const CharacterBody3D *, const Variant &place) {
	return places::as_vector3(place);
}

Variant target_of(SCMachineBase *machine, const SCMachineAction *action) {
	const StringName variable = setting_of<&Kind::toward_variable>(action);
	if (!variable.is_empty()) {
		return places::position_of(Object::cast_to<Node>(machine->get_value(variable, Variant()).get_validated_object()));
	}
	const NodePath path = setting_of<&Kind::toward_path>(action);
	return path.is_empty() ? Variant() : places::position_of(machine->node_at(path));
}

// Of length 1, or zero for nowhere.
template <class Body>
auto way_of(SCMachineBase *machine, const SCMachineAction *action, const Body *body) {
	using Vector = decltype(body->get_velocity());
	Vector way;
	switch (setting_of<&Kind::way>(action)) {
		case Kind::THE_WAY_IT_IS_FACING:
			way = facing_of(body);
			break;
		case Kind::A_DIRECTION:
			way = as_direction(body, values::value_of(machine, setting_of<&Kind::direction>(action), setting_of<&Kind::direction_variable>(action)));
			break;
		case Kind::TOWARD_A_NODE: {
			const Variant target = target_of(machine, action);
			if (target.get_type() != Variant::NIL && body->is_inside_tree()) {
				way = as_place(body, target) - body->get_global_position();
			}
			break;
		}
		default: {
			const Vector velocity = body->get_velocity();
			const Vector moving = body->is_on_floor() ? bodies::without(velocity, body->get_up_direction()) : velocity;
			way = moving.length() > STANDS_STILL ? moving : Vector();
			break;
		}
	}
	return way.is_finite() ? way.normalized() : Vector();
}

template <class Body>
bool has_to_wait(const SCMachineAction *action, const Body *body) {
	// Below 0 in a game that goes on from where another run of it was saved.
	const double since = GameClocks::now(GameClocks::PHYSICS_UNPAUSED) - body_keys::number(body, names().dashed_at, -Math::INF);
	if (since >= 0.0 && since + NO_TIME < setting_of<&Kind::wait_between>(action)) {
		return true;
	}
	return setting_of<&Kind::one_until_it_lands>(action) && !body->is_on_floor() && body->has_meta(names().dashed_in) &&
			body_notes::last_on_floor(body) <= int64_t(body->get_meta(names().dashed_in));
}

double speed_of(SCMachineBase *machine, const SCMachineAction *action, double seconds) {
	const double distance = values::number_of(machine, setting_of<&Kind::distance>(action), setting_of<&Kind::distance_variable>(action));
	return checked::sound_or_warn(machine, action, distance, verbs::name_of<&Kind::distance>()) ? distance / seconds : 0.0;
}

// Back to how fast it went that way before, if nothing has stopped it: a dash covers its distance and no more.
template <class Body>
void settle(Body *body, const SCMachineAction *action, Dictionary slot) {
	const Names &keys = names();
	using Vector = decltype(body->get_velocity());
	const Vector way = Vector(slot.get(keys.dash, Vector())).normalized();
	const double share = slot.get(keys.share, 0.0);
	if (share > 0.0) {
		const Vector up = body->get_up_direction();
		const Vector velocity = body->get_velocity();
		const double now = double(velocity.dot(way)) / share;
		const double before = slot.get(keys.before, 0.0);
		const Vector level = bodies::without(way, up) * real_t(CLAMP(now, 0.0, before));
		const Vector rise = setting_of<&Kind::ignores_gravity>(action) ? Vector() : up * velocity.dot(up);
		body->set_velocity(level + rise);
	}
	body->set_meta(keys.dashed_in, frame_now());
}

class Dash : public SCNativeAction {
	static void refuse(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StillHere here(machine);
		verbs::send<&Kind::refused_event>(machine, action);
		if (here) {
			machine->finish(index);
		}
	}

	template <class Body>
	static void set_off(SCMachineBase *machine, SCMachineAction *action, int index, Body *body) {
		using Vector = decltype(body->get_velocity());
		if (has_to_wait(action, body)) {
			refuse(machine, action, index);
			return;
		}
		const StillHere here(machine);
		const Vector way = way_of(machine, action, body);
		if (way == Vector()) {
			verbs::say<&Kind::warn_dash>(action, machine, index, int(Kind::NOWHERE), body);
			if (here) {
				refuse(machine, action, index);
			}
			return;
		}
		const double seconds = CLAMP(checked::number<&Kind::seconds>(machine, action), SHORTEST, checked::LARGEST);
		Dictionary slot = machine->slot(index);
		slot[names().dash] = way * real_t(speed_of(machine, action, seconds));
		slot[names().before] = MAX(double(body->get_velocity().dot(way)), 0.0);
		slot[names().left] = seconds;
		body->set_meta(names().dashed_at, GameClocks::now(GameClocks::PHYSICS_UNPAUSED));
		body->set_meta(names().dashed_in, frame_now());
		verbs::send<&Kind::dashed_event>(machine, action);
	}

	template <class Body>
	static void step(SCMachineBase *machine, SCMachineAction *action, int index, Dictionary slot, Body *body, double delta) {
		using Vector = decltype(body->get_velocity());
		const Names &keys = names();
		const Variant held = slot.get(keys.dash, Variant());
		const double left = slot.get(keys.left, 0.0);
		// Another Body than the one that set off, by a variable.
		if (held.get_type() != Variant(Vector()).get_type()) {
			machine->finish(index);
			return;
		}
		const Vector dash = held;
		const bool falls = !setting_of<&Kind::ignores_gravity>(action);
		const double share = MIN(left / delta, 1.0);
		Vector velocity = dash * real_t(share);
		if (falls) {
			const Vector up = body->get_up_direction();
			const bool lifts_off = !slot.has(keys.share) && double(dash.dot(up)) != 0.0;
			velocity = bodies::without(velocity, up) + up * (lifts_off ? dash : body->get_velocity()).dot(up);
		}
		slot[keys.share] = share;
		slot[keys.left] = left - delta;
		body->set_velocity(velocity);
		const Weak<Body> weak(body);
		const StillHere here(machine);
		machine->move_character(body, falls, falls ? body_keys::number(body, BodyKeys::shared().walk_gravity, 0.0) : 0.0, delta);
		if (!here || left - delta > NO_TIME) {
			return;
		}
		slot.erase(keys.left);
		if (weak.get() != nullptr) {
			settle(weak.get(), action, slot);
		}
		machine->finish(index);
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->slot(index).clear();
		Node *node = values::node_of(machine, setting_of<&Kind::body_path>(action));
		if (bodies::visit(node, [&](auto *body) { set_off(machine, action, index, body); })) {
			return;
		}
		const StillHere here(machine);
		verbs::say<&Kind::warn_dash>(action, machine, index, int(node != nullptr ? Kind::NO_CHARACTER : Kind::NOBODY), node);
		if (here) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		Dictionary slot = machine->slot(index);
		if (!slot.has(names().left) || !(delta > 0.0)) {
			return;
		}
		Node *node = values::node_of(machine, setting_of<&Kind::body_path>(action));
		smoothing::smooth(node);
		if (!bodies::visit(node, [&](auto *body) { step(machine, action, index, slot, body, delta); })) {
			slot.erase(names().left);
			machine->finish(index);
		}
	}

	// Left in the middle of it.
	void exit(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Dictionary slot = machine->slot(index);
		if (!slot.erase(names().left)) {
			return;
		}
		bodies::visit(values::node_of(machine, setting_of<&Kind::body_path>(action)), [&](auto *body) {
			if (slot.get(names().dash, Variant()).get_type() == Variant(body->get_velocity()).get_type()) {
				settle(body, action, slot);
			}
		});
	}
};

const AddKinds added = {
	add_kind<SCDashAction, Dash>(),
};

} // namespace
