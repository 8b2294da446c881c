// Compiled runtimes of the kinds that help while a game is being made.

#include "action/add_kind.hpp"
#include "action/machines.hpp"
#include "action/shared_verbs.hpp"
#include "action/spaces.hpp"
#include "kinds/flow/debug_drawings.hpp"
#include "kinds/flow/testing.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/canvas_item.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/classes/os.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

struct TestingNames {
	StringName failed = "failed";
	StringName drawing = "drawing";
	StringName drawn_in = "drawn_in";
};

bool is_being_made() {
	return OS::get_singleton()->is_debug_build();
}

class Assert : public SCNativeAction {
	static void stop_game(SCMachineBase *machine, const SCMachineAction *action, const Ref<SCMachineCondition> &condition) {
		const String said = setting_of<&SCAssertAction::message>(action);
		const String wrong = said.is_empty() ? vformat("it is not so that: %s.", condition->shown_summary()) : words::fill_in(said, machine);
		UtilityFunctions::push_error(
				vformat("Assert on %s failed in state %s: %s", machine->name_in_messages(), machines::name_of_state(machine->running_state()), wrong));
		SceneTree *tree = machine->is_inside_tree() ? machine->get_tree() : nullptr;
		if (tree == nullptr) {
			return;
		}
		if (setting_of<&SCAssertAction::stop_by>(action) == SCAssertAction::PAUSING) {
			tree->set_pause(true);
		} else {
			tree->quit(1);
		}
	}

	static void check(SCMachineBase *machine, SCMachineAction *action, int index) {
		Dictionary memory = machine->slot(index);
		const StringName &failed = NativeNames::of<TestingNames>().failed;
		const Ref<SCMachineCondition> condition = setting_of<&SCAssertAction::condition>(action);
		if (condition.is_null()) {
			verbs::warn(machine, action, "it has no question to ask, so it makes sure of nothing. Pick one beside Condition.");
			return;
		}
		// Said once a visit: what is wrong now is likely to be so in the next frame too.
		if (memory.get(failed, false) || (action->repeats() && condition->wait_for_actions && !machine->actions_done_except(index))) {
			return;
		}
		StillHere here(machine);
		if (!machine->ask(condition.ptr(), index, Variant()) && here) {
			memory[failed] = true;
			stop_game(machine, action, condition);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->finish(index);
		if (is_being_made()) {
			check(machine, action, index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		if (action->repeats() && is_being_made()) {
			check(machine, action, index);
		}
	}
};

constexpr int CIRCLE_STEPS = 32;

// What the two worlds have in common: how a place is read, and which corners and rings a shape has.
struct In2D {
	using Drawings = SCDebugDrawings2D;
	using Place = Vector2;
	static constexpr int AXES = 2;

	static Place place(const Variant &value) { return places::as_vector2(value); }
	static Place to_world(const Node *from, const Place &there) {
		const CanvasItem *item = Object::cast_to<CanvasItem>(from);
		return item != nullptr ? item->get_global_transform().xform(there) : there;
	}
	static Place turned(const Node *from, const Place &there) {
		const CanvasItem *item = Object::cast_to<CanvasItem>(from);
		return item != nullptr ? there.rotated(item->get_global_transform().get_rotation()) : there;
	}
	static Place on_circle(int, double angle) { return Place(real_t(Math::cos(angle)), real_t(Math::sin(angle))); }
	static constexpr int RINGS = 1;
};

struct In3D {
	using Drawings = SCDebugDrawings3D;
	using Place = Vector3;
	static constexpr int AXES = 3;

	static Place place(const Variant &value) { return places::as_vector3(value); }
	static Place to_world(const Node *from, const Place &there) {
		const Node3D *node = Object::cast_to<Node3D>(from);
		return node != nullptr ? spaces::world_of(node).xform(there) : there;
	}
	static Place turned(const Node *from, const Place &there) {
		const Node3D *node = Object::cast_to<Node3D>(from);
		return node != nullptr ? spaces::world_of(node).basis.orthonormalized().xform(there) : there;
	}
	// A ring round each axis, so that it is seen from every side.
	static Place on_circle(int ring, double angle) {
		Place at;
		at[(ring + 1) % 3] = real_t(Math::cos(angle));
		at[(ring + 2) % 3] = real_t(Math::sin(angle));
		return at;
	}
	static constexpr int RINGS = 3;
};

template <class World>
typename World::Drawings::Points circle_round(const typename World::Place &middle, real_t radius) {
	typename World::Drawings::Points ends;
	for (int ring = 0; ring < World::RINGS; ring++) {
		for (int step = 0; step < CIRCLE_STEPS; step++) {
			ends.push_back(middle + World::on_circle(ring, Math::TAU * step / CIRCLE_STEPS) * radius);
			ends.push_back(middle + World::on_circle(ring, Math::TAU * (step + 1) / CIRCLE_STEPS) * radius);
		}
	}
	return ends;
}

// A corner is a number with a bit for each axis; an edge joins two that differ in one bit.
template <class World>
typename World::Drawings::Points box_round(const Node *from, const typename World::Place &middle, const typename World::Place &size) {
	const auto corner = [&](int bits) {
		typename World::Place at = size * 0.5;
		for (int axis = 0; axis < World::AXES; axis++) {
			at[axis] *= (bits >> axis) & 1 ? 1 : -1;
		}
		return middle + World::turned(from, at);
	};
	typename World::Drawings::Points ends;
	for (int bits = 0; bits < 1 << World::AXES; bits++) {
		for (int axis = 0; axis < World::AXES; axis++) {
			if (((bits >> axis) & 1) == 0) {
				ends.push_back(corner(bits));
				ends.push_back(corner(bits | 1 << axis));
			}
		}
	}
	return ends;
}

class DrawDebug : public SCNativeAction {
	// Numbers are given once, so that a drawing that outlives its state is nobody else's.
	static int64_t next_number() {
		static int64_t last = 0;
		return ++last;
	}

	static Node *placed_node(SCMachineBase *machine, SCMachineAction *action, const NodePath &path, const StringName &setting) {
		Node *node = verbs::node_or_warn(machine, action, path, setting);
		if (node != nullptr && !places::has_a_place(node)) {
			verbs::warn(machine, action, places::no_place_words(node, verbs::setting_in_inspector(setting)) + ".");
			return nullptr;
		}
		return node;
	}

	template <class World>
	static bool ends_of(SCMachineBase *machine, SCMachineAction *action, const Node *from, typename World::Drawings::Points &ends) {
		const typename World::Place middle = World::place(places::position_of(from));
		const typename World::Place size = World::place(setting_of<&SCDrawDebugAction::size>(action));
		switch (setting_of<&SCDrawDebugAction::shape>(action)) {
			case SCDrawDebugAction::LINE: {
				const NodePath to_path = setting_of<&SCDrawDebugAction::to_path>(action);
				Variant end = setting_of<&SCDrawDebugAction::to_point>(action);
				if (!to_path.is_empty()) {
					const Node *to = placed_node(machine, action, to_path, "to_path");
					if (to == nullptr) {
						return false;
					}
					end = places::position_of(to);
				}
				ends.push_back(middle);
				ends.push_back(World::place(end));
				return true;
			}
			case SCDrawDebugAction::RAY:
				ends.push_back(middle);
				ends.push_back(World::to_world(from, World::place(setting_of<&SCDrawDebugAction::target_position>(action))));
				return true;
			case SCDrawDebugAction::CIRCLE:
				ends = circle_round<World>(middle, Math::abs(size[0]) / 2);
				return true;
			case SCDrawDebugAction::BOX:
				break;
		}
		ends = box_round<World>(from, middle, size);
		return true;
	}

	template <class World>
	static void draw_in(SCMachineBase *machine, SCMachineAction *action, int index, Node *from) {
		DebugDrawing<typename World::Drawings::Points> drawing;
		if (!ends_of<World>(machine, action, from, drawing.ends)) {
			return;
		}
		typename World::Drawings *drawings = World::Drawings::beside(from);
		if (drawings == nullptr) {
			return;
		}
		drawing.color = setting_of<&SCDrawDebugAction::color>(action);
		drawing.seconds = action->repeats() ? 0.0 : setting_of<&SCDrawDebugAction::seconds>(action);
		const TestingNames &names = NativeNames::of<TestingNames>();
		Dictionary memory = machine->slot(index);
		if (!memory.has(names.drawing)) {
			memory[names.drawing] = next_number();
		}
		const int64_t id = int64_t(drawings->get_instance_id());
		if (int64_t(memory.get(names.drawn_in, id)) != id) {
			take_away(memory);
		}
		memory[names.drawn_in] = id;
		drawings->put(memory[names.drawing], drawing);
	}

	static void draw(SCMachineBase *machine, SCMachineAction *action, int index) {
		if (!is_being_made()) {
			return;
		}
		Node *from = placed_node(machine, action, setting_of<&SCDrawDebugAction::from_path>(action), "from_path");
		if (from == nullptr) {
			return;
		}
		if (places::is_2d(from)) {
			draw_in<In2D>(machine, action, index, from);
		} else {
			draw_in<In3D>(machine, action, index, from);
		}
	}

	static void take_away(const Dictionary &memory) {
		const TestingNames &names = NativeNames::of<TestingNames>();
		Object *drawings = ObjectDB::get_instance(uint64_t(int64_t(memory.get(names.drawn_in, 0))));
		const int64_t number = memory.get(names.drawing, 0);
		if (SCDebugDrawings2D *node_2d = Object::cast_to<SCDebugDrawings2D>(drawings)) {
			node_2d->take(number);
		} else if (SCDebugDrawings3D *node_3d = Object::cast_to<SCDebugDrawings3D>(drawings)) {
			node_3d->take(number);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		machine->finish(index);
		draw(machine, action, index);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double) override {
		if (action->repeats()) {
			draw(machine, action, index);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *action, int index) override {
		if (action->repeats() || setting_of<&SCDrawDebugAction::seconds>(action) <= 0.0) {
			take_away(machine->slot(index));
		}
	}
};

const AddKinds added = {
	add_kind<SCAssertAction, Assert>(),
	add_kind<SCDrawDebugAction, DrawDebug>(),
};

} // namespace
