// The compiled runtime of Ledge Grab: the way up onto a ledge is found as the state is entered, and gone in the physics frames
// after that.

#include "action/add_kind.hpp"
#include "action/shared_verbs.hpp"
#include "character/body_notes.hpp"
#include "character/body_sweeps.hpp"
#include "character/facing_along.hpp"
#include "kinds/physics/ledge_grab.hpp"
#include "machine/native_names.hpp"
#include "steering/walking.hpp"

namespace {

using Kind = SCLedgeGrabAction;

struct Names {
	StringName body = "body";
	StringName from = "from";
	StringName rise = "rise";
	StringName over = "over";
	StringName gone = "gone";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// How near a wall counts as being pressed against it, in metres: a body that slides down one is not held against it.
constexpr double PRESSED = 0.1;
// A wall leans no more than this, as a part of the upright.
constexpr double STEEPEST = 0.7;
// From low to high, as there may be a ceiling above the ledge.
constexpr int HEIGHTS = 12;
// Shares of the way past the edge: all of it would be too far on a thin wall.
constexpr double OVER[] = { 1.0, 0.5, 0.25 };
constexpr double LEAST_RISE = 0.01;
constexpr double SLACK = 1.01;

template <class Vector>
struct Way {
	Vector rise;
	Vector over;
	bool is_found = false;
};

template <class Body>
struct Search {
	using Vector = decltype(std::declval<Body>().get_velocity());

	Body *body;
	double reach;
	double past;
	Vector up = body->get_up_direction();
	double metre = walking::is_2d(body) ? places::PIXELS_PER_METRE : 1.0;
	double margin = double(body->get_safe_margin());

	// Up to there, over the edge and down onto what is there.
	Way<Vector> onto(const Vector &raised, const Vector &into, double gap) const {
		Way<Vector> way;
		const Vector wanted = into * real_t(past + gap + margin);
		const auto ahead = sweeps::sweep(body, raised, wanted);
		const double room = double(ahead.travel.dot(into));
		for (const double share : OVER) {
			const double far = past * share + gap;
			if (far > room + margin) {
				continue;
			}
			const Vector over = into * real_t(far);
			const auto down = sweeps::sweep(body, raised + over, -raised);
			if (!down.is_blocked || !sweeps::is_floor(body, down.normal)) {
				continue;
			}
			const Vector stands = raised + down.travel;
			if (double(stands.dot(up)) > LEAST_RISE * metre && double(stands.dot(up)) <= reach * SLACK) {
				way.rise = up * stands.dot(up);
				way.over = over + bodies::without(down.travel, up);
				way.is_found = true;
				break;
			}
		}
		return way;
	}

	Way<Vector> toward(const Vector &direction) const {
		const Vector level = bodies::without(direction, up);
		if (!level.is_finite() || level.is_zero_approx()) {
			return Way<Vector>();
		}
		const auto wall = sweeps::sweep(body, Vector(), level.normalized() * real_t(PRESSED * metre));
		if (!wall.is_blocked || Math::abs(double(wall.normal.dot(up))) > STEEPEST) {
			return Way<Vector>();
		}
		const Vector into = -bodies::without(wall.normal, up).normalized();
		const double gap = MAX(double(wall.travel.dot(into)), 0.0);
		const double lift = reach * SLACK + 2.0 * margin;
		const auto above = sweeps::sweep(body, Vector(), up * real_t(lift));
		const double free = double(above.travel.dot(up));
		for (int i = 1; i <= HEIGHTS; i++) {
			const double height = lift * i / HEIGHTS;
			const Way<Vector> way = onto(up * real_t(MIN(height, free)), into, gap);
			if (way.is_found || height >= free) {
				return way;
			}
		}
		return Way<Vector>();
	}

	static Vector2 facing(const CharacterBody2D *body) { return facing_along::faces_left(body) ? Vector2(-1, 0) : Vector2(1, 0); }
	static Vector3 facing(const CharacterBody3D *body) { return -body->get_global_transform().basis.get_column(2); }

	// The wall it touched last, then where it is going, then where it looks.
	Way<Vector> find() const {
		Way<Vector> way;
		if (!body->is_inside_tree() || !(reach > 0.0) || !(past > 0.0)) {
			return way;
		}
		if (body->is_on_wall()) {
			way = toward(-body->get_wall_normal());
		}
		way = way.is_found ? way : toward(body->get_velocity());
		return way.is_found ? way : toward(facing(body));
	}
};

class LedgeGrab : public SCNativeAction {
	static double distance_or_none(double number) { return Math::is_finite(number) ? number : 0.0; }

	template <class Body>
	static bool catches(Body *body, Dictionary slot, double reach, double past) {
		const auto way = Search<Body>{ body, reach, past }.find();
		if (way.is_found) {
			slot[names().body] = int64_t(body->get_instance_id());
			slot[names().from] = body->get_global_position();
			slot[names().rise] = way.rise;
			slot[names().over] = way.over;
			slot[names().gone] = 0.0;
			body->set_velocity({});
			body_notes::forget_floor(body);
		}
		return way.is_found;
	}

	// Up the wall first, then over its edge.
	template <class Body>
	static void put(Body *body, const Dictionary &slot, double share) {
		using Vector = decltype(body->get_velocity());
		const Vector rise = slot[names().rise];
		const Vector over = slot[names().over];
		const double tall = double(rise.length());
		const double gone = share * (tall + double(over.length()));
		Vector place = slot[names().from];
		if (gone < tall) {
			place += rise.normalized() * real_t(gone);
		} else {
			place += rise + over.normalized() * real_t(MIN(gone - tall, double(over.length())));
		}
		body->set_velocity({});
		body->set_global_position(place);
	}

	static Node *climber(const Dictionary &slot) {
		const int64_t id = slot.get(names().body, 0);
		return id != 0 ? Object::cast_to<Node>(ObjectDB::get_instance(ObjectID(uint64_t(id)))) : nullptr;
	}

	// True once it is up there.
	static bool climb(Dictionary slot, double seconds, double delta) {
		Node *node = climber(slot);
		if (node == nullptr || !node->is_inside_tree()) {
			return true;
		}
		const double gone = double(slot[names().gone]) + delta;
		slot[names().gone] = gone;
		const double share = seconds > 0.0 ? MIN(gone / seconds, 1.0) : 1.0;
		bodies::visit(node, [&](auto *body) { put(body, slot, share); });
		return share >= 1.0;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		Dictionary slot = machine->slot(index);
		slot.clear();
		Kind *kind = as_kind<Kind>(action);
		Node *node = kind != nullptr ? values::node_of(machine, kind->body_path) : nullptr;
		if (kind == nullptr || !bodies::is_character(node)) {
			if (kind != nullptr) {
				verbs::say<&Kind::warn_ledge_grab>(kind, machine, index, node != nullptr ? 0 : 1, node);
			}
			if (here) {
				machine->finish(index);
			}
			return;
		}
		const double seconds = kind->seconds;
		const double reach = distance_or_none(values::number_of(machine, kind->reach_up, kind->reach_up_variable));
		bool caught = false;
		bodies::visit(node, [&](auto *body) { caught = catches(body, slot, reach, distance_or_none(kind->over_the_edge)); });
		verbs::send(machine, caught ? kind->grabbed_event : kind->no_ledge_event);
		if (here && (!caught || (!(seconds > 0.0) && climb(slot, 0.0, 0.0)))) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		if (climb(machine->slot(index), setting_of<&Kind::seconds>(action), delta)) {
			machine->finish(index);
		}
	}
};

const AddKinds added = {
	add_kind<SCLedgeGrabAction, LedgeGrab>(),
};

} // namespace
