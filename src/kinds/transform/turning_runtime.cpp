// Compiled runtimes of the kinds that turn things.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/facing.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "action/sides.hpp"
#include "action/spaces.hpp"
#include "kinds/transform/turning.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/camera3d.hpp>
#include <godot_cpp/classes/viewport.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/plane.hpp>

namespace {

struct TurningNames {
	// By axis.
	NodePath local_angles[3] = { NodePath("rotation:x"), NodePath("rotation:y"), NodePath("rotation:z") };
	NodePath global_angles[3] = { NodePath("global_rotation:x"), NodePath("global_rotation:y"), NodePath("global_rotation:z") };
	NodePath angle_2d = NodePath("rotation");
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
	static bool mouse_on_the_level(const Node3D *node_3d, Vector3 &found) {
		const Viewport *viewport = node_3d->is_inside_tree() ? node_3d->get_viewport() : nullptr;
		const Camera3D *camera = viewport != nullptr ? viewport->get_camera_3d() : nullptr;
		if (camera == nullptr) {
			return false;
		}
		const Vector2 pointer = viewport->get_mouse_position();
		const Plane level(Vector3(0, 1, 0), node_3d->get_global_position());
		return level.intersects_ray(camera->project_ray_origin(pointer), camera->project_ray_normal(pointer), &found);
	}

	static Variant direction_to(const Node *placed, const Variant &place) {
		return spaces::with_vectors(placed, places::position_of(placed), place, [](auto from, auto to) { return to - from; });
	}

	static Variant direction_to_mouse(SCMachineBase *machine, const SCMachineAction *action, const Node *placed) {
		if (const CanvasItem *item = Object::cast_to<CanvasItem>(placed)) {
			return item->is_inside_tree() ? direction_to(placed, item->get_global_mouse_position()) : Variant();
		}
		const Node3D *node_3d = Object::cast_to<Node3D>(placed);
		if (node_3d != nullptr && node_3d->is_inside_tree() && node_3d->get_viewport()->get_camera_3d() == nullptr) {
			verbs::warn(machine, action,
					vformat("there is no camera to look through, so there is no telling what the mouse points at, and %s was not turned. Add a Camera3D.",
							placed->get_name()));
		}
		Vector3 pointed_at;
		return node_3d != nullptr && mouse_on_the_level(node_3d, pointed_at) ? direction_to(placed, pointed_at) : Variant();
	}

	static Variant direction_in_world(const Node *placed, const SCMachineAction *action) {
		const Variant way = spaces::on_side_of(placed, setting_of<&Kind::direction>(action));
		if (setting_of<&Kind::space>(action) == Kind::GLOBAL) {
			return way;
		}
		if (const CanvasItem *item = Object::cast_to<CanvasItem>(placed)) {
			return spaces::parent_of(item).basis_xform(way);
		}
		const Node3D *node_3d = Object::cast_to<Node3D>(placed);
		return node_3d != nullptr ? Variant(spaces::parent_of(node_3d).basis.xform(way)) : way;
	}

	// Nil when there is nothing to face, of which the game maker is told.
	static Variant direction_of(SCMachineBase *machine, const SCMachineAction *action, const Node *placed) {
		switch (setting_of<&Kind::face>(action)) {
			case Kind::A_NODE: {
				if (setting_of<&Kind::at_path>(action).is_empty()) {
					verbs::warn(machine, action, "it has no node to face, so it turned nothing. Pick one under At Path.");
					return Variant();
				}
				const Node *at = spaces::placed_or_warn<&Kind::at_path>(machine, action);
				if (at == placed) {
					verbs::warn(machine, action, vformat("%s cannot face itself, so it was not turned. Pick another node under At Path.", placed->get_name()));
					return Variant();
				}
				const bool is_seen =
						at != nullptr && sides::same_or_warn(machine, action, placed, at, "so it was not turned", verbs::name_of<&Kind::at_path>());
				return is_seen ? direction_to(placed, places::position_of(at)) : Variant();
			}
			case Kind::THE_MOUSE:
				return direction_to_mouse(machine, action, placed);
			case Kind::A_PLACE:
				return spaces::place_or_warn<&Kind::place>(machine, action) ? direction_to(placed, setting_of<&Kind::place>(action)) : Variant();
			case Kind::A_DIRECTION:
				return spaces::place_or_warn<&Kind::direction>(machine, action) ? direction_in_world(placed, action) : Variant();
		}
		return Variant();
	}

	static Variant goal_of(SCMachineBase *machine, const SCMachineAction *action, const Node *placed) {
		const Variant direction = direction_of(machine, action, placed);
		if (direction.get_type() == Variant::NIL || !spaces::has_size_or_warn(machine, action, placed, true)) {
			return Variant();
		}
		facing::Stance stance;
		stance.degrees = checked::number<&Kind::turned_by>(machine, action);
		stance.level = setting_of<&Kind::keep_level>(action);
		return facing::goal(placed, direction, stance);
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Node *placed = spaces::placed_or_warn<&Kind::node_path>(machine, action);
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
		Easings::move_property<&Kind::curve, &Kind::easing>(
				machine, action, index, placed, facing::property_of(placed), goal, checked::number<&Kind::duration>(machine, action));
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int, double delta) override {
		if (!action->repeats()) {
			return;
		}
		Node *placed = spaces::placed_or_warn<&Kind::node_path>(machine, action);
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

	static void turn(Node3D *node_3d, const SCMachineAction *action, double angle) {
		const Vector3 axis = unit(int(setting_of<&Kind::axis>(action)));
		if (setting_of<&Kind::space>(action) == Kind::LOCAL) {
			node_3d->rotate_object_local(axis, real_t(angle));
		} else if (node_3d->is_inside_tree()) {
			node_3d->global_rotate(axis, real_t(angle));
		} else {
			node_3d->rotate(axis, real_t(angle));
		}
	}
	static void turn(CanvasItem *item, const SCMachineAction *, double angle) { spaces::set_rotation_of(item, spaces::rotation_of(item) + angle); }

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		if (const Node *placed = spaces::placed_or_warn<&Kind::node_path>(machine, action)) {
			spaces::warn_if_placed_by_another(machine, action, placed);
		}
		machine->finish(index);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int, double delta) override {
		const double angle = Math::deg_to_rad(checked::number<&Kind::speed>(machine, action)) * delta;
		Node *placed = spaces::placed<&Kind::node_path>(machine, action);
		if (setting_of<&Kind::space>(action) != Kind::LOCAL && !spaces::has_size_or_warn(machine, action, placed, false)) {
			return;
		}
		spaces::visit(placed, [action, angle](auto *node) { turn(node, action, angle); });
	}
};

class RotateTo : public MovesAProperty<RotateTo> {
	using Kind = SCRotateToAction;

	// How far it is to turn from an angle it stands at, in radians.
	static double turn_from(SCMachineBase *machine, const SCMachineAction *action, double now) {
		const double typed = Math::deg_to_rad(checked::number<&Kind::degrees>(machine, action));
		if (setting_of<&Kind::space>(action) == Kind::FROM_WHERE_IT_IS) {
			return typed;
		}
		return setting_of<&Kind::way>(action) == Kind::AS_TYPED ? typed - now : Math::angle_difference(now, typed);
	}

	// In 2D an angle in the world is turned by turning the node in its parent, the other way round in a mirrored one.
	static double turn_in_2d(SCMachineBase *machine, const SCMachineAction *action, const CanvasItem *item) {
		if (setting_of<&Kind::space>(action) != Kind::GLOBAL) {
			return turn_from(machine, action, spaces::rotation_of(item));
		}
		const double turn = turn_from(machine, action, spaces::world_of(item).get_rotation());
		return spaces::parent_of(item).determinant() < 0.0f ? -turn : turn;
	}

public:
	static PropertyMove plan(SCMachineBase *machine, SCMachineAction *action, int) {
		Node *placed = spaces::placed_or_warn<&Kind::node_path>(machine, action);
		if (placed == nullptr) {
			return {};
		}
		spaces::warn_if_placed_by_another(machine, action, placed);
		NodePath property = names().angle_2d;
		double now = 0.0;
		double by = 0.0;
		if (const CanvasItem *item = Object::cast_to<CanvasItem>(placed)) {
			now = spaces::rotation_of(item);
			by = turn_in_2d(machine, action, item);
		} else if (const Node3D *node_3d = Object::cast_to<Node3D>(placed)) {
			const int axis = CLAMP(int(setting_of<&Kind::axis>(action)), 0, 2);
			const bool global = setting_of<&Kind::space>(action) == Kind::GLOBAL && node_3d->is_inside_tree();
			if (global && !spaces::has_size_or_warn(machine, action, placed, true)) {
				return {};
			}
			property = global ? names().global_angles[axis] : names().local_angles[axis];
			now = global ? node_3d->get_global_rotation()[axis] : node_3d->get_rotation()[axis];
			by = turn_from(machine, action, now);
		}
		const double speed = Math::deg_to_rad(checked::number<&Kind::speed>(machine, action));
		const double seconds = speed > 0.0 ? Math::abs(by) / speed : checked::number<&Kind::duration>(machine, action);
		return { placed, property, now + by, seconds, Easings::of<&Kind::curve, &Kind::easing>(machine, action) };
	}
};

const AddKinds added = {
	add_kind<SCLookAtAction, LookAt>(),
	add_kind<SCRotateAction, KeepTurning>(),
	add_kind<SCRotateToAction, RotateTo>(),
};

} // namespace
