// The compiled runtime of Step Up: a body that a step has stopped is put on top of it.

#include "action/add_kind.hpp"
#include "action/shared_verbs.hpp"
#include "character/body_keys.hpp"
#include "character/body_sweeps.hpp"
#include "kinds/physics/step_up.hpp"
#include "steering/walking.hpp"

namespace {

using Kind = SCStepUpAction;

// From low to high, as a tall limit must not lift a body into a lintel above a small bump.
constexpr int HEIGHTS = 4;
// How far onto the step it is put, in metres. A round foot has to be farther on before it stands.
constexpr double ONTO_IT[] = { 0.02, 0.04, 0.08, 0.16, 0.32 };
constexpr double FARTHEST_ON = 0.32;
// Lower is no step, in metres.
constexpr double LEAST_RISE = 0.005;
// A step of just the limit is one.
constexpr double SLACK = 1.01;
constexpr double SLOWEST = 0.001;
// The share of the speed asked for that a body still has when nothing is in its way.
constexpr double FREE_SHARE = 0.9;
constexpr int SLIDES = 2;

template <class Body>
struct Climb {
	using Vector = decltype(std::declval<Body>().get_velocity());

	Body *body;
	double tallest;
	Vector up = body->get_up_direction();
	double metre = walking::is_2d(body) ? places::PIXELS_PER_METRE : 1.0;
	double margin = double(body->get_safe_margin());

	// From up there along the way it goes, and along walls beside it.
	Vector forward(const Vector &raised, const Vector &way) const {
		Vector gone;
		Vector left = way * real_t(FARTHEST_ON * metre);
		for (int i = 0; i <= SLIDES; i++) {
			const auto ahead = sweeps::sweep(body, raised + gone, left);
			gone += bodies::without(ahead.travel, up);
			if (!ahead.is_blocked) {
				break;
			}
			const Vector wall = bodies::without(ahead.normal, up).normalized();
			left = bodies::without(left - ahead.travel, up);
			left = left - wall * MIN(left.dot(wall), real_t(0.0));
			if (double(left.length()) < ONTO_IT[0] * metre || left.dot(way) <= 0.0f) {
				break;
			}
		}
		return gone;
	}

	// Where it stands on the step, from where it is. Zero when it cannot.
	Vector onto_step(const Vector &raised, const Vector &way, double floor) const {
		const Vector ahead = forward(raised, way);
		const double room = double(ahead.length());
		for (const double on : ONTO_IT) {
			const double far = on * metre;
			if (room < far - margin) {
				return Vector();
			}
			const Vector over = raised + ahead.normalized() * real_t(MIN(far, room));
			const auto down = sweeps::sweep(body, over, -raised);
			if (!down.is_blocked || !sweeps::is_floor(body, down.normal)) {
				continue;
			}
			const Vector stands = over + down.travel;
			const double lifted = double(stands.dot(up));
			// A round foot stands on the edge before it is all the way up.
			const double rise = MAX(double(down.point.dot(up)) - floor, lifted);
			if (rise <= tallest * SLACK && lifted > LEAST_RISE * metre) {
				return stands;
			}
		}
		return Vector();
	}

	Vector find(const Vector &way) const {
		const double lift = tallest * SLACK + 2.0 * margin;
		const auto below = sweeps::sweep(body, Vector(), -up * real_t(lift));
		if (!below.is_blocked) {
			return Vector();
		}
		const double floor = double(below.point.dot(up));
		const auto above = sweeps::sweep(body, Vector(), up * real_t(lift));
		const double free = double(above.travel.dot(up));
		for (int i = 1; i <= HEIGHTS; i++) {
			const double height = lift * i / HEIGHTS;
			const Vector stands = onto_step(up * real_t(MIN(height, free)), way, floor);
			if (stands != Vector()) {
				return stands;
			}
			if (height >= free) {
				break;
			}
		}
		return Vector();
	}

	// True when it was lifted.
	bool take() {
		const BodyKeys &keys = BodyKeys::shared();
		if (!body->is_inside_tree() || !body->is_on_floor() || !body->has_meta(keys.asked_speed)) {
			return false;
		}
		const Vector asked = bodies::without(Vector(body->get_meta(keys.asked_speed)), up);
		const double speed = double(asked.length());
		if (!(speed > SLOWEST * metre) || !asked.is_finite()) {
			return false;
		}
		const Vector way = asked.normalized();
		if (!body->is_on_wall() && double(body->get_velocity().dot(way)) >= speed * FREE_SHARE) {
			return false;
		}
		// What it hit last may be behind it by now.
		if (!sweeps::sweep(body, Vector(), way * real_t(ONTO_IT[0] * metre)).is_blocked) {
			return false;
		}
		const Vector onto = find(way);
		if (onto == Vector()) {
			return false;
		}
		body->set_global_position(body->get_global_position() + onto);
		// The step took the speed that it would go on with.
		body->set_velocity(asked);
		return true;
	}
};

template <class Body>
bool climb(Body *body, double tallest) {
	return Climb<Body>{ body, tallest }.take();
}

class StepUp : public SCNativeAction {
	static Node *helped(SCMachineBase *machine, Kind *kind, int index) {
		Node *node = values::node_of(machine, kind->body_path);
		if (!bodies::is_character(node)) {
			verbs::say<&Kind::warn_step_up>(kind, machine, index, node != nullptr ? 0 : 1, node);
			return nullptr;
		}
		return node;
	}

	static double tallest(SCMachineBase *machine, const Kind *kind) {
		const double step = values::number_of(machine, kind->tallest_step, kind->tallest_step_variable);
		return Math::is_finite(step) ? MAX(step, 0.0) : 0.0;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		Kind *kind = as_kind<Kind>(action);
		Node *node = kind != nullptr ? helped(machine, kind, index) : nullptr;
		if (!here) {
			return;
		}
		// What it asked for in another state is long past.
		if (node != nullptr) {
			node->remove_meta(BodyKeys::shared().asked_speed);
			body_keys::keep_number(node, BodyKeys::shared().steps_up, tallest(machine, kind), -1.0);
		}
		machine->finish(index);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		Kind *kind = as_kind<Kind>(action);
		Node *node = kind != nullptr ? helped(machine, kind, index) : nullptr;
		if (node == nullptr) {
			return;
		}
		const double step = tallest(machine, kind);
		body_keys::keep_number(node, BodyKeys::shared().steps_up, step, -1.0);
		bool lifted = false;
		if (step > 0.0) {
			bodies::visit(node, [&](auto *body) { lifted = climb(body, step); });
		}
		if (lifted) {
			verbs::send(machine, kind->stepped_event);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *action, int) override {
		Node *node = values::node_of(machine, setting_of<&Kind::body_path>(action));
		if (bodies::is_character(node)) {
			node->remove_meta(BodyKeys::shared().steps_up);
			node->remove_meta(BodyKeys::shared().asked_speed);
		}
	}
};

const AddKinds added = {
	add_kind<SCStepUpAction, StepUp>(),
};

} // namespace
