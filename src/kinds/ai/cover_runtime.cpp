// The compiled runtime of Take Cover.

#include "action/add_kind.hpp"
#include "kinds/ai/cover.hpp"
#include "kinds/ai/ground.hpp"
#include "kinds/ai/mover_step.hpp"

#include <godot_cpp/classes/scene_tree.hpp>

namespace {

using Kind = SCTakeCoverAction;
using Step = MoverStep<Kind>;

struct Names {
	StringName spot = "spot";
	StringName in_cover = "in_cover";
	StringName hidden_at = "_hidden_at";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// The nearest spot that will do; null for none, and when the state was left while a script judged them.
Node *nearest_cover(const Step &step, const Weak<Node> &threat) {
	const Kind *kind = step.kind;
	if (kind->cover_group.is_empty()) {
		return nullptr;
	}
	const TypedArray<Node> spots = step.body->get_tree()->get_nodes_in_group(kind->cover_group);
	ObjectID nearest;
	double least = Math::INF;
	for (int64_t i = 0; i < spots.size(); i++) {
		Node *spot = Object::cast_to<Node>(spots[i].get_validated_object());
		if (spot == nullptr || spot == step.body) {
			continue;
		}
		const double distance = ground::distance(step.body, spot);
		if (!(distance < least) || (kind->within > 0.0 && distance > kind->within)) {
			continue;
		}
		if (kind->must_be_out_of_sight && threat.get() != nullptr) {
			const Weak<Node> asked(spot);
			const bool hides = step.kind->call(names().hidden_at, spot, threat.get(), step.body).booleanize();
			if (!step.goes_on()) {
				return nullptr;
			}
			if (!hides || asked.get() == nullptr) {
				continue;
			}
		}
		least = distance;
		nearest = ObjectID(spot->get_instance_id());
	}
	return Object::cast_to<Node>(ObjectDB::get_instance(nearest));
}

class TakeCover : public SCNativeAction {
	static Variant ask_hidden_at(const Array &arguments) {
		Kind *kind = arguments.size() == 4 ? Object::cast_to<Kind>(arguments[0].get_validated_object()) : nullptr;
		return kind != nullptr && kind->hidden_at(arguments[1], arguments[2], arguments[3]);
	}

public:
	TakeCover() { SCNativeActions::add_helper("take_cover_hidden_at", &ask_hidden_at); }

	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const Step step(machine, action, index, 0.0);
		if (step.kind == nullptr || !step.has_body_or_warn()) {
			return;
		}
		const Weak<Node> threat(step.target());
		if (!step.goes_on()) {
			return;
		}
		const Weak<Node> spot(nearest_cover(step, threat));
		if (!step.here) {
			return;
		}
		if (spot.get() == nullptr) {
			verbs::send(machine, step.kind->no_cover_event);
			if (step.here) {
				machine->finish(index);
			}
			return;
		}
		step.note(names().spot, spot.get());
		verbs::keep_if_named<&Kind::store_cover_in>(machine, step.kind, spot.get());
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const Step step(machine, action, index, delta);
		Node *spot = step.kind != nullptr ? Object::cast_to<Node>(step.slot().get(names().spot, Variant()).get_validated_object()) : nullptr;
		if (step.body == nullptr || spot == nullptr) {
			machine->finish(index);
			return;
		}
		const Weak<Node> held(spot);
		const bool arrived = step.steer(places::position_of(spot), step.kind->arrive_within);
		if (!step.here) {
			return;
		}
		const bool was_in_cover = step.noted(names().in_cover);
		step.note(names().in_cover, arrived);
		if (arrived && !was_in_cover) {
			verbs::send(machine, step.kind->in_cover_event, held.get());
			if (step.here) {
				machine->finish(index);
			}
		}
	}
};

const AddKinds added = {
	add_kind<SCTakeCoverAction, TakeCover>(),
};

} // namespace
