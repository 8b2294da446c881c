// Compiled runtimes of the kinds that turn things.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/facing.hpp"
#include "action/native_names.hpp"
#include "action/shared_verbs.hpp"
#include "action/spaces.hpp"
#include "kinds/transform/turning.hpp"

#include <godot_cpp/classes/camera3d.hpp>
#include <godot_cpp/classes/viewport.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/plane.hpp>

namespace {

struct TurningNames {
	StringName node_path = "node_path";
	StringName at_path = "at_path";
	StringName place = "place";
	StringName direction = "direction";
	// By axis.
	NodePath local_angles[3] = { NodePath("rotation:x"), NodePath("rotation:y"), NodePath("rotation:z") };
	NodePath global_angles[3] = { NodePath("global_rotation:x"), NodePath("global_rotation:y"), NodePath("global_rotation:z") };
	NodePath flat_angle = NodePath("rotation");
};

const TurningNames &names() {
	return NativeNames::of<TurningNames>();
}

Vector3 unit(int axis) {
	Vector3 way;
	way[CLAMP(axis, 0, 2)] = 1.0f;
	return way;
}

class LookAt : public SCNativeAction {
	using Kind = SCLookAtAction;

	// On the level of the node, where a game seen from above is played. False when the pointer points at the sky.
	static bool mouse_on_the_level(const Node3D *deep, Vector3 &found) {
		const Viewport *viewport = deep->is_inside_tree() ? deep->get_viewport() : nullptr;
		const Camera3D *camera = viewport != nullptr ? viewport->get_camera_3d() : nullptr;
		if (camera == nullptr) {
			return false;
		}
		const Vector2 pointer = viewport->get_mouse_position();
		const Plane level(Vector3(0, 1, 0), deep->get_global_position());
		return level.intersects_ray(camera->project_ray_origin(pointer), camera->project_ray_normal(pointer), &found);
	}

	static Variant direction_to(const Node *placed, const Variant &place) {
		const Variant from = places::position_of(placed);
		if (spaces::is_flat(placed)) {
			return places::as_vector2(place) - places::as_vector2(from);
		}
		return places::as_vector3(place) - places::as_vector3(from);
	}

	static Variant direction_to_mouse(const Node *placed) {
		if (const CanvasItem *flat = Object::cast_to<CanvasItem>(placed)) {
			return flat->is_inside_tree() ? direction_to(placed, flat->get_global_mouse_position()) : Variant();
		}
		const Node3D *deep = Object::cast_to<Node3D>(placed);
		Vector3 pointed_at;
		return deep != nullptr && mouse_on_the_level(deep, pointed_at) ? direction_to(placed, pointed_at) : Variant();
	}

	static Variant direction_in_world(const Node *placed, const SCMachineAction *action, const Variant &direction) {
		const Variant way = spaces::on_side_of(placed, direction);
		if (setting_of<&Kind::space>(action) == Kind::GLOBAL) {
			return way;
		}
		if (const CanvasItem *flat = Object::cast_to<CanvasItem>(placed)) {
			return spaces::parent_of(flat).basis_xform(way);
		}
		const Node3D *deep = Object::cast_to<Node3D>(placed);
		return deep != nullptr ? Variant(spaces::parent_of(deep).basis.xform(way)) : way;
	}

	// Nil when there is nothing to face, of which the game maker is told.
	static Variant direction_of(SCMachineBase *machine, const SCMachineAction *action, const Node *placed) {
		switch (setting_of<&Kind::face>(action)) {
			case Kind::A_NODE: {
				const NodePath path = setting_of<&Kind::at_path>(action);
				if (path.is_empty()) {
					verbs::warn(machine, action, "it has no node to face, so it turned nothing. Pick one under At Path.");
					return Variant();
				}
				const Node *at = spaces::placed_or_warn(machine, action, path, names().at_path);
				if (at == placed) {
					verbs::warn(machine, action, vformat("%s cannot face itself, so it was not turned. Pick another node under At Path.", placed->get_name()));
					return Variant();
				}
				return at != nullptr ? direction_to(placed, places::position_of(at)) : Variant();
			}
			case Kind::THE_MOUSE:
				return direction_to_mouse(placed);
			case Kind::A_PLACE: {
				const Variant place = setting_of<&Kind::place>(action);
				return spaces::place_or_warn(machine, action, place, names().place) ? direction_to(placed, place) : Variant();
			}
			case Kind::A_DIRECTION: {
				const Variant direction = setting_of<&Kind::direction>(action);
				return spaces::place_or_warn(machine, action, direction, names().direction) ? direction_in_world(placed, action, direction) : Variant();
			}
		}
		return Variant();
	}

	static Variant goal_of(SCMachineBase *machine, const SCMachineAction *action, const Node *placed) {
		const Variant direction = direction_of(machine, action, placed);
		if (direction.get_type() == Variant::NIL) {
			return Variant();
		}
		facing::Stance stance;
		stance.degrees = checked::number<&Kind::turned_by>(machine, action);
		stance.level = setting_of<&Kind::keep_level>(action);
		return facing::goal(placed, direction, stance);
	}

	static Node *node_of(SCMachineBase *machine, const SCMachineAction *action) {
		return spaces::placed_or_warn(machine, action, setting_of<&Kind::node_path>(action), names().node_path);
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Node *placed = node_of(machine, action);
		const Variant goal = placed != nullptr ? goal_of(machine, action, placed) : Variant();
		if (action->repeats()) {
			// One that takes time to turn has had none yet.
			if (placed != nullptr && checked::number<&Kind::turn_speed>(machine, action) <= 0.0) {
				facing::turn(placed, goal);
			}
			return;
		}
		if (goal.get_type() == Variant::NIL) {
			machine->finish(index);
			return;
		}
		Easings::move_property<&Kind::curve, &Kind::easing>(machine, action, index, placed, facing::property_of(placed), goal, checked::number<&Kind::duration>(machine, action));
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int, double delta) override {
		if (!action->repeats()) {
			return;
		}
		Node *placed = node_of(machine, action);
		if (placed == nullptr) {
			return;
		}
		const double speed = checked::number<&Kind::turn_speed>(machine, action);
		const double most = speed > 0.0 ? Math::deg_to_rad(speed) * delta : std::numeric_limits<double>::infinity();
		facing::turn(placed, goal_of(machine, action, placed), most);
	}
};

class KeepTurning : public SCNativeAction {
	using Kind = SCRotateAction;

	static void turn(Node3D *deep, const SCMachineAction *action, double angle) {
		const Vector3 axis = unit(int(setting_of<&Kind::axis>(action)));
		if (setting_of<&Kind::space>(action) == Kind::LOCAL) {
			deep->rotate_object_local(axis, real_t(angle));
		} else if (deep->is_inside_tree()) {
			deep->global_rotate(axis, real_t(angle));
		} else {
			deep->rotate(axis, real_t(angle));
		}
	}
	static void turn(Node2D *flat, const SCMachineAction *, double angle) { flat->set_rotation(flat->get_rotation() + angle); }
	static void turn(Control *control, const SCMachineAction *, double angle) { control->set_rotation(real_t(control->get_rotation() + angle)); }

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		if (const Node *placed = spaces::placed_or_warn(machine, action, setting_of<&Kind::node_path>(action), names().node_path)) {
			spaces::warn_if_placed_by_another(machine, action, placed);
		}
		machine->finish(index);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int, double delta) override {
		const double angle = Math::deg_to_rad(checked::number<&Kind::speed>(machine, action)) * delta;
		spaces::visit(spaces::placed(machine, setting_of<&Kind::node_path>(action)), [action, angle](auto *node) { turn(node, action, angle); });
	}
};

class RotateTo : public SCNativeAction {
	using Kind = SCRotateToAction;

	// How far it is to turn from an angle it stands at, in radians.
	static double turn_from(SCMachineBase *machine, const SCMachineAction *action, double now) {
		const double typed = Math::deg_to_rad(checked::number<&Kind::degrees>(machine, action));
		if (setting_of<&Kind::space>(action) == Kind::FROM_WHERE_IT_IS) {
			return typed;
		}
		return setting_of<&Kind::way>(action) == Kind::AS_TYPED ? typed - now : Math::angle_difference(now, typed);
	}

	// A flat node's angle in the world is turned by turning it in its parent, the other way round in a mirrored one.
	static double flat_turn(SCMachineBase *machine, const SCMachineAction *action, const CanvasItem *flat, double rotation) {
		if (setting_of<&Kind::space>(action) != Kind::GLOBAL) {
			return turn_from(machine, action, rotation);
		}
		const double turn = turn_from(machine, action, spaces::world_of(flat).get_rotation());
		return spaces::parent_of(flat).determinant() < 0.0f ? -turn : turn;
	}

	static void turn(SCMachineBase *machine, SCMachineAction *action, int index, Node *placed, const NodePath &property, double from, double by) {
		const double speed = Math::deg_to_rad(checked::number<&Kind::speed>(machine, action));
		const double seconds = speed > 0.0 ? Math::abs(by) / speed : checked::number<&Kind::duration>(machine, action);
		Easings::move_property<&Kind::curve, &Kind::easing>(machine, action, index, placed, property, from + by, seconds);
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Node *placed = spaces::placed_or_warn(machine, action, setting_of<&Kind::node_path>(action), names().node_path);
		if (placed == nullptr) {
			machine->finish(index);
			return;
		}
		spaces::warn_if_placed_by_another(machine, action, placed);
		if (const Node2D *flat = Object::cast_to<Node2D>(placed)) {
			turn(machine, action, index, placed, names().flat_angle, flat->get_rotation(), flat_turn(machine, action, flat, flat->get_rotation()));
		} else if (const Control *control = Object::cast_to<Control>(placed)) {
			turn(machine, action, index, placed, names().flat_angle, control->get_rotation(), flat_turn(machine, action, control, control->get_rotation()));
		} else if (const Node3D *deep = Object::cast_to<Node3D>(placed)) {
			const int axis = CLAMP(int(setting_of<&Kind::axis>(action)), 0, 2);
			const bool global = setting_of<&Kind::space>(action) == Kind::GLOBAL && deep->is_inside_tree();
			const double now = global ? deep->get_global_rotation()[axis] : deep->get_rotation()[axis];
			turn(machine, action, index, placed, global ? names().global_angles[axis] : names().local_angles[axis], now, turn_from(machine, action, now));
		}
	}
};

const AddKinds added = {
	add_kind<SCLookAtAction, LookAt>(),
	add_kind<SCRotateAction, KeepTurning>(),
	add_kind<SCRotateToAction, RotateTo>(),
};

} // namespace
