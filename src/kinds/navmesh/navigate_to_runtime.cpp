// The compiled runtime of Navigate To: the agent finds the way, and the steps of every walker follow it.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/shared_verbs.hpp"
#include "action/sides.hpp"
#include "action/spaces.hpp"
#include "action/weak.hpp"
#include "character/body_notes.hpp"
#include "character/smoothing.hpp"
#include "kinds/navmesh/navigate_to.hpp"
#include "machine/native_names.hpp"
#include "steering/reaching.hpp"
#include "steering/walking.hpp"

#include <godot_cpp/classes/time.hpp>

namespace {

using Kind = SCNavigateToAction;

constexpr double PATIENCE = 0.25;
// A mesh that is not built after so long is none to wait for. The threads that build it know nothing of the game's time.
constexpr int64_t MOST_PATIENCE_MSEC = 1000;
// Less than this short of it is rounding.
constexpr double SLACK = 0.000001;

struct Names {
	StringName arrived = "arrived";
	// For how many seconds there has been no way.
	StringName out_of_reach = "out_of_reach";
	// When the mesh was first found not to be there to ask.
	StringName waits_since = "waits_since";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// One step, from finding out who walks where to the move.
class Step {
	SCMachineBase *machine;
	Kind *kind;
	int index;
	double delta;
	StillHere here;
	Node *body = nullptr;
	Node *agent = nullptr;

	void say(int64_t what) { verbs::say<&Kind::warn>(kind, machine, index, what, body); }

	bool suits(const Node *found) const {
		return Object::cast_to<Node2D>(body) != nullptr ? Object::cast_to<NavigationAgent2D>(found) != nullptr
														: Object::cast_to<NavigationAgent3D>(found) != nullptr;
	}

	// An agent works for the node it lies under, and for nobody when that has no place.
	bool find_agent() {
		const bool is_picked = !kind->agent_path.is_empty();
		agent = is_picked ? values::node_of(machine, kind->agent_path) : body_notes::agent_of(body);
		const bool is_any = Object::cast_to<NavigationAgent2D>(agent) != nullptr || Object::cast_to<NavigationAgent3D>(agent) != nullptr;
		if (!is_any) {
			say(is_picked ? Kind::NOT_AN_AGENT : Kind::NO_AGENT);
			return false;
		}
		const Node *parent = agent->get_parent();
		const bool is_placed =
				Object::cast_to<Node2D>(body) != nullptr ? Object::cast_to<Node2D>(parent) != nullptr : Object::cast_to<Node3D>(parent) != nullptr;
		if (!suits(agent) || !is_placed || !agent->is_inside_tree()) {
			verbs::warn(machine, kind,
					vformat("%s is a %s under %s, which finds no way for %s, so it does not move. Put a %s under %s.", agent->get_name(), agent->get_class(),
							parent != nullptr ? String(parent->get_name()) : String("nothing"), body->get_name(),
							Object::cast_to<Node2D>(body) != nullptr ? "NavigationAgent2D" : "NavigationAgent3D", body->get_name()));
			return false;
		}
		return true;
	}

	// Nil when there is none, of which the game maker is told.
	Variant goal() {
		if (kind->to_node_variable.is_empty() && kind->to_node_path.is_empty()) {
			const Variant place = values::value_of(machine, kind->to, kind->to_variable);
			return spaces::place_or_warn(machine, kind, place, verbs::name_of<&Kind::to>()) ? on_side(place) : Variant();
		}
		const StringName &setting = kind->to_node_variable.is_empty() ? verbs::name_of<&Kind::to_node_path>() : verbs::name_of<&Kind::to_node_variable>();
		const Node *node = kind->to_node_variable.is_empty() ? values::node_of(machine, kind->to_node_path)
															 : Object::cast_to<Node>(machine->get_value(kind->to_node_variable).get_validated_object());
		if (node == nullptr) {
			say(Kind::NO_NODE_TO_GO_TO);
			return Variant();
		}
		if (!places::has_a_place(node)) {
			verbs::warn(machine, kind, vformat("%s.", places::no_place_words(node, verbs::setting_in_inspector(setting))));
			return Variant();
		}
		const Variant place = places::position_of(node);
		return sides::same_or_warn(machine, kind, body, node, "so it stands still", setting) && checked::is_sound(place) ? on_side(place) : Variant();
	}

	Variant on_side(const Variant &place) const {
		return Object::cast_to<Node2D>(body) != nullptr ? Variant(places::as_vector2(place)) : Variant(places::as_vector3(place));
	}

	// Counts for how long there has been no way, and tells of it once. False when there may be one soon.
	template <class Agent>
	bool is_settled(const Agent *of_agent, bool is_reachable) {
		Dictionary slot = machine->slot(index);
		const double before = slot.get(names().out_of_reach, 0.0);
		if (is_reachable) {
			slot[names().out_of_reach] = 0.0;
			return true;
		}
		if (before >= PATIENCE - SLACK) {
			return true;
		}
		if (reaching::is_being_built(of_agent)) {
			const int64_t present = int64_t(Time::get_singleton()->get_ticks_msec());
			// Another run of the game may have saved it.
			const int64_t since = MIN(int64_t(slot.get(names().waits_since, present)), present);
			slot[names().waits_since] = since;
			if (present - since < MOST_PATIENCE_MSEC) {
				return false;
			}
		}
		const double now = before + delta;
		slot[names().out_of_reach] = now;
		if (now < PATIENCE - SLACK) {
			return false;
		}
		verbs::send(machine, kind->no_path_event);
		return true;
	}

	void arrive() {
		Dictionary slot = machine->slot(index);
		if (slot.get(names().arrived, false).booleanize()) {
			return;
		}
		slot[names().arrived] = true;
		verbs::send(machine, kind->arrived_event);
		if (here && kind->finish_on_arrival) {
			machine->finish(index);
		}
	}

	// The agent tells a game of the points and the end it comes by, so that each of them may be gone after any question to it.
	template <class Agent, class Body, class Vector>
	void follow(Agent *of_agent, Body *of_body, const Vector &goal) {
		const Weak<Agent> weak_agent(of_agent);
		const Weak<Body> weak_body(of_body);
		const auto still = [&] {
			return here && weak_agent.get() != nullptr && weak_body.get() != nullptr && of_body->is_inside_tree() && of_agent->is_inside_tree();
		};
		walking::Pace pace;
		pace.falls = walking::really_falls(machine, kind, of_body, kind->falls);
		walking::send_agent(of_agent, goal);
		const bool has_a_map = reaching::has_a_map(of_agent);
		const bool reachable = has_a_map && reaching::is_reachable(of_agent);
		if (!still()) {
			return;
		}
		const bool settled = is_settled(of_agent, reachable);
		if (!still()) {
			return;
		}
		if (!has_a_map) {
			walking::stand_still(machine, of_body, pace.falls, delta);
			return;
		}
		const bool finished = of_agent->is_navigation_finished();
		const bool there = still() && reaching::is_there(of_agent, of_body, goal, pace.falls);
		if (!still()) {
			return;
		}
		if (finished || there) {
			if (!there) {
				walking::look_for_a_way_again(of_agent);
			}
			walking::stand_still(machine, of_body, pace.falls, delta);
			if (here && (settled || there)) {
				arrive();
			}
			return;
		}
		const Vector aim = of_agent->get_next_path_position();
		if (!still()) {
			return;
		}
		const double speed = values::number_of(machine, kind->speed, kind->speed_variable);
		pace.speed = checked::is_sound(speed) ? speed : 0.0;
		pace.turns = kind->turn_to_face;
		pace.turn_speed = kind->turn_speed;
		machine->slot(index)[names().arrived] = false;
		// As far as the next point of the way, so that even a fast one does not run past it.
		walking::step_toward(machine, of_body, aim, walking::distance(of_body, aim, pace.falls), pace, delta);
	}

public:
	Step(SCMachineBase *of_machine, Kind *of_kind, int of_index, double of_delta) :
			machine(of_machine), kind(of_kind), index(of_index), delta(of_delta), here(of_machine) {}

	// False when there is nobody to walk or no agent to ask, of which the game maker is told.
	bool find_walker() {
		body = values::node_of(machine, kind->body_path);
		if (Object::cast_to<Node2D>(body) == nullptr && Object::cast_to<Node3D>(body) == nullptr) {
			body = nullptr;
			say(Kind::NO_BODY);
			return false;
		}
		return body->is_inside_tree() && find_agent();
	}

	void set_out() {
		const Variant first = find_walker() ? goal() : Variant();
		if (here && first.get_type() != Variant::NIL) {
			walking::send_agent(agent, first);
		}
	}

	void take() {
		if (!find_walker()) {
			return;
		}
		const Weak<Node> walker(body);
		const Variant to = goal();
		if (!here || walker.get() == nullptr) {
			return;
		}
		smoothing::smooth(body);
		if (to.get_type() == Variant::NIL) {
			walking::stand_still(machine, body, walking::really_falls(machine, kind, body, kind->falls), delta);
		} else if (Node2D *body_2d = Object::cast_to<Node2D>(body)) {
			follow(Object::cast_to<NavigationAgent2D>(agent), body_2d, Vector2(to));
		} else if (Node3D *body_3d = Object::cast_to<Node3D>(body)) {
			follow(Object::cast_to<NavigationAgent3D>(agent), body_3d, Vector3(to));
		}
	}
};

class NavigateTo : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Dictionary slot = machine->slot(index);
		slot[names().arrived] = false;
		slot[names().out_of_reach] = 0.0;
		slot.erase(names().waits_since);
		if (Kind *kind = as_kind<Kind>(action)) {
			const Ref<Kind> held(kind);
			Step(machine, kind, index, 0.0).set_out();
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		if (Kind *kind = as_kind<Kind>(action)) {
			const Ref<Kind> held(kind);
			Step(machine, kind, index, delta).take();
		}
	}
};

const AddKinds added = {
	add_kind<SCNavigateToAction, NavigateTo>(),
};

} // namespace
