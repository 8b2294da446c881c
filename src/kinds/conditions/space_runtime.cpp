// Compiled conditions about where things are.

#include "action/add_kind.hpp"
#include "action/conditions.hpp"
#include "action/sides.hpp"
#include "fast_lane/lane_offer.hpp"
#include "fast_lane/spots.hpp"
#include "kinds/conditions/space.hpp"

#include <godot_cpp/classes/camera3d.hpp>
#include <godot_cpp/classes/canvas_item.hpp>
#include <godot_cpp/classes/control.hpp>
#include <godot_cpp/classes/input.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/sprite2d.hpp>
#include <godot_cpp/classes/sub_viewport.hpp>
#include <godot_cpp/classes/sub_viewport_container.hpp>
#include <godot_cpp/classes/visible_on_screen_notifier2d.hpp>
#include <godot_cpp/classes/visual_instance3d.hpp>
#include <godot_cpp/classes/window.hpp>
#include <godot_cpp/core/math.hpp>

namespace {

// Measures the way the fast lane does, so that it makes no difference which of the two is asked.
class Measure {
	const Node *body;
	spots::Side side;
	Vector3 from;
	bool along_the_ground;
	bool placed;

public:
	double nearest = Math::INF;

	Measure(const Node *from_body, bool ignore_height) :
			body(from_body), side(spots::side_of(from_body)), along_the_ground(ignore_height && side == spots::IN_3D),
			placed(side != spots::NOWHERE && spots::read(from_body, side, from)) {}

	const Node *from_body() const { return body; }
	// Nothing is near to what has no place, nor across 2D and 3D.
	void to(const Node *node) {
		Vector3 spot;
		if (placed && node != nullptr && node != body && spots::side_of(node) == side && spots::read(node, side, spot)) {
			nearest = MIN(nearest, along_the_ground ? spots::ground_distance(from, spot, side) : spots::full_distance(from, spot));
		}
	}
};

bool has_place(SCMachineBase *machine, SCMachineCondition *condition, const Node *node, const StringName &setting) {
	if (spots::side_of(node) != spots::NOWHERE) {
		return true;
	}
	verbs::warn(machine, condition, vformat("%s.", places::no_place_words(node, verbs::setting_in_inspector(setting))));
	return false;
}

bool measure_to_node(SCMachineBase *machine, SCMachineCondition *condition, Measure &measure) {
	const Node *node = conditions::node<&SCDistanceCondition::to_node_path>(machine, condition);
	const StringName &setting = verbs::name_of<&SCDistanceCondition::to_node_path>();
	if (node == nullptr || !has_place(machine, condition, node, setting) ||
			!sides::same_or_warn(machine, condition, measure.from_body(), node, "so the answer is no", setting)) {
		return false;
	}
	measure.to(node);
	return true;
}

bool measure_to_group(SCMachineBase *machine, SCMachineCondition *condition, Measure &measure) {
	const StringName group = setting_of<&SCDistanceCondition::group>(condition);
	if (group.is_empty()) {
		verbs::warn(machine, condition, "there is nothing to measure to, so the answer is no. Pick a node under To Node Path, or type a group under Group.");
		return false;
	}
	const Array members = machine->get_tree()->get_nodes_in_group(group);
	for (int64_t i = 0; i < members.size(); i++) {
		measure.to(Object::cast_to<Node>(members[i].get_validated_object()));
	}
	return true;
}

bool is_near(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCDistanceCondition;
	const Node *body = conditions::node(machine, condition, NodePath(), "target");
	if (body == nullptr || !machine->is_inside_tree() || !has_place(machine, condition, body, "target")) {
		return false;
	}
	Measure measure(body, setting_of<&Kind::ignore_height>(condition));
	const bool to_group = setting_of<&Kind::to_node_path>(condition).is_empty();
	const bool measured = to_group ? measure_to_group(machine, condition, measure) : measure_to_node(machine, condition, measure);
	if (!measured || Math::is_inf(measure.nearest)) {
		return false;
	}
	const bool near = measure.nearest <= setting_of<&Kind::distance>(condition);
	verbs::keep_if_named<&Kind::store_in>(machine, condition, measure.nearest);
	return near;
}

// The lane keeps no distance, and tells nobody what is wrong.
bool asked_of_the_lane(SCMachineBase *machine, SCMachineCondition *condition, LaneDistance &asked) {
	using Kind = SCDistanceCondition;
	const NodePath path = setting_of<&Kind::to_node_path>(condition);
	asked.body = machine->target_node();
	asked.to_node = path.is_empty() ? nullptr : values::node_of(machine, path);
	asked.group = setting_of<&Kind::group>(condition);
	asked.distance = setting_of<&Kind::distance>(condition);
	asked.ignore_height = setting_of<&Kind::ignore_height>(condition);
	const bool has_goal = path.is_empty() ? !asked.group.is_empty() : spots::side_of(asked.to_node) != spots::NOWHERE;
	return has_goal && spots::side_of(asked.body) != spots::NOWHERE && setting_of<&Kind::store_in>(condition).is_empty();
}

// In its own coordinates; without a size for what is only a point.
Rect2 outline_of(const CanvasItem *item) {
	if (const Control *control = Object::cast_to<Control>(item)) {
		return Rect2(Vector2(), control->get_size());
	}
	if (const Sprite2D *sprite = Object::cast_to<Sprite2D>(item)) {
		return sprite->get_rect();
	}
	const VisibleOnScreenNotifier2D *notifier = Object::cast_to<VisibleOnScreenNotifier2D>(item);
	return notifier != nullptr ? notifier->get_rect() : Rect2();
}

bool is_item_on_screen(const CanvasItem *item, const Rect2 &screen) {
	return item->is_visible_in_tree() && screen.intersects(item->get_global_transform_with_canvas().xform(outline_of(item)), true);
}

bool is_body_on_screen(const Node3D *node, const Camera3D *camera, const Rect2 &screen) {
	if (!node->is_visible_in_tree()) {
		return false;
	}
	const Transform3D place = node->get_global_transform();
	const VisualInstance3D *shown = Object::cast_to<VisualInstance3D>(node);
	const AABB box = shown != nullptr ? shown->get_aabb() : AABB();
	const int corners = shown != nullptr ? 8 : 1;
	Rect2 covered;
	bool in_front = false;
	for (int i = 0; i < corners; i++) {
		const Vector3 corner = place.xform(box.get_endpoint(i));
		// What is behind the camera would come out mirrored.
		if (camera->is_position_behind(corner)) {
			continue;
		}
		const Vector2 point = camera->unproject_position(corner);
		covered = in_front ? covered.expand(point) : Rect2(point, Vector2());
		in_front = true;
	}
	return in_front && screen.intersects(covered, true);
}

bool is_on_screen(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCOnScreenCondition;
	const Node *node = conditions::node<&Kind::node_path>(machine, condition);
	if (node == nullptr || !node->is_inside_tree()) {
		return false;
	}
	const Viewport *viewport = node->get_viewport();
	if (viewport == nullptr) {
		return false;
	}
	const Rect2 screen = viewport->get_visible_rect().grow(real_t(setting_of<&Kind::margin>(condition)));
	// A margin that leaves nothing of the screen.
	if (screen.size.x < 0 || screen.size.y < 0) {
		return false;
	}
	if (const CanvasItem *item = Object::cast_to<CanvasItem>(node)) {
		return is_item_on_screen(item, screen);
	}
	if (!has_place(machine, condition, node, verbs::name_of<&Kind::node_path>())) {
		return false;
	}
	const Node3D *node_3d = Object::cast_to<Node3D>(node);
	const Camera3D *camera = viewport->get_camera_3d();
	if (camera == nullptr) {
		verbs::warn(machine, condition,
				vformat("there is no 3D camera to see %s, so the answer is no. Add a Camera3D to the scene and make it the current one.", node->get_name()));
		return false;
	}
	return is_body_on_screen(node_3d, camera, screen);
}

bool is_over_ui(Viewport *viewport);

// A control that lets clicks pass hands them to the one it sits in.
bool takes_clicks(const Control *control) {
	while (control != nullptr) {
		// It shows another picture, and hands every click on into it.
		if (Object::cast_to<SubViewportContainer>(control) != nullptr) {
			for (int i = 0; i < control->get_child_count(); i++) {
				if (SubViewport *inside = Object::cast_to<SubViewport>(control->get_child(i)); inside != nullptr && is_over_ui(inside)) {
					return true;
				}
			}
			return false;
		}
		const Control::MouseFilter filter = control->get_mouse_filter_with_override();
		if (filter != Control::MOUSE_FILTER_PASS || control->is_set_as_top_level()) {
			return filter == Control::MOUSE_FILTER_STOP;
		}
		control = control->get_parent_control();
	}
	return false;
}

bool is_over_ui(Viewport *viewport) {
	const Array windows = viewport->get_embedded_subwindows();
	for (int64_t i = 0; i < windows.size(); i++) {
		const Window *window = Object::cast_to<Window>(windows[i].get_validated_object());
		if (window != nullptr && window->is_visible() && Rect2(window->get_position(), window->get_size()).has_point(viewport->get_mouse_position())) {
			return true;
		}
	}
	return takes_clicks(viewport->gui_get_hovered_control());
}

bool is_pointer_over_ui(SCMachineBase *machine, SCMachineCondition *) {
	// A captured pointer is nowhere on the screen.
	if (!machine->is_inside_tree() || Input::get_singleton()->get_mouse_mode() == Input::MOUSE_MODE_CAPTURED) {
		return false;
	}
	return is_over_ui(machine->get_tree()->get_root());
}

const LaneOffer offered(&is_near, &asked_of_the_lane);

const AddKinds added = {
	add_condition<SCDistanceCondition, &is_near>(),
	add_condition<SCOnScreenCondition, &is_on_screen>(),
	add_condition<SCPointerOverUiCondition, &is_pointer_over_ui>(),
};

} // namespace
