// Events that nodes and the application send by themselves. A machine connects exactly those that its
// design waits for, from its start until it stops.

#include "machine/companion_scripts.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine_node/sc_machine.hpp"
#include "machine_node/shared_machine_data.hpp"
#include "machine_node/system_call.hpp"

#include <godot_cpp/classes/area2d.hpp>
#include <godot_cpp/classes/area3d.hpp>
#include <godot_cpp/classes/base_button.hpp>
#include <godot_cpp/classes/canvas_item.hpp>
#include <godot_cpp/classes/collision_object2d.hpp>
#include <godot_cpp/classes/collision_object3d.hpp>
#include <godot_cpp/classes/control.hpp>
#include <godot_cpp/classes/input_event_mouse_button.hpp>
#include <godot_cpp/classes/line_edit.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/classes/rigid_body2d.hpp>
#include <godot_cpp/classes/rigid_body3d.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/window.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

// Enough for a rigid body to tell of what it meets, when its maker has not asked for more.
constexpr int FEWEST_CONTACTS = 4;

enum class Needs {
	NOTHING,
	WINDOW,
	CONTROL,
	SOMETHING_SEEN,
	PICKABLE,
	BUTTON,
	COLLISION_OBJECT,
	BODY_OR_AREA,
	AREA,
	LINE_EDIT,
};

struct SystemEvent {
	const char *event;
	Needs needs;
	const char *signal;
	SystemCall::Kind kind;
};

// The first row that names the event and whose need the target meets is the one that is connected.
constexpr SystemEvent SYSTEM_EVENTS[] = {
	{ "application_focus_in", Needs::WINDOW, "focus_entered", SystemCall::PLAIN },
	{ "application_focus_out", Needs::WINDOW, "focus_exited", SystemCall::PLAIN },
	{ "close_requested", Needs::WINDOW, "close_requested", SystemCall::PLAIN },
	{ "focus_entered", Needs::CONTROL, "focus_entered", SystemCall::PLAIN },
	{ "focus_exited", Needs::CONTROL, "focus_exited", SystemCall::PLAIN },
	{ "shown", Needs::SOMETHING_SEEN, "visibility_changed", SystemCall::VISIBILITY },
	{ "hidden", Needs::SOMETHING_SEEN, "visibility_changed", SystemCall::VISIBILITY },
	{ "child_order_changed", Needs::NOTHING, "child_order_changed", SystemCall::PLAIN },
	{ "mouse_entered", Needs::PICKABLE, "mouse_entered", SystemCall::PLAIN },
	{ "mouse_exited", Needs::PICKABLE, "mouse_exited", SystemCall::PLAIN },
	{ "pressed", Needs::BUTTON, "pressed", SystemCall::PLAIN },
	{ "pressed", Needs::CONTROL, "gui_input", SystemCall::GUI_INPUT },
	{ "button_down", Needs::CONTROL, "gui_input", SystemCall::GUI_INPUT },
	{ "button_up", Needs::CONTROL, "gui_input", SystemCall::GUI_INPUT },
	{ "right_pressed", Needs::CONTROL, "gui_input", SystemCall::GUI_INPUT },
	{ "middle_pressed", Needs::CONTROL, "gui_input", SystemCall::GUI_INPUT },
	{ "pressed", Needs::COLLISION_OBJECT, "input_event", SystemCall::OBJECT_INPUT },
	{ "button_down", Needs::COLLISION_OBJECT, "input_event", SystemCall::OBJECT_INPUT },
	{ "button_up", Needs::COLLISION_OBJECT, "input_event", SystemCall::OBJECT_INPUT },
	{ "right_pressed", Needs::COLLISION_OBJECT, "input_event", SystemCall::OBJECT_INPUT },
	{ "middle_pressed", Needs::COLLISION_OBJECT, "input_event", SystemCall::OBJECT_INPUT },
	{ "body_entered", Needs::BODY_OR_AREA, "body_entered", SystemCall::WITH_ARGUMENT },
	{ "body_exited", Needs::BODY_OR_AREA, "body_exited", SystemCall::WITH_ARGUMENT },
	{ "area_entered", Needs::AREA, "area_entered", SystemCall::WITH_ARGUMENT },
	{ "area_exited", Needs::AREA, "area_exited", SystemCall::WITH_ARGUMENT },
	{ "text_submitted", Needs::LINE_EDIT, "text_submitted", SystemCall::WITH_ARGUMENT },
};

bool is_mouse_event(SystemCall::Kind kind) {
	return kind == SystemCall::GUI_INPUT || kind == SystemCall::OBJECT_INPUT;
}

template <class... Classes>
bool is_any_of(Node *node) {
	return ((Object::cast_to<Classes>(node) != nullptr) || ...);
}

// A rigid body tells of what it meets only when it is asked to.
template <class Body>
bool make_tell_of_contacts(Node *node) {
	Body *body = Object::cast_to<Body>(node);
	if (body == nullptr) {
		return false;
	}
	body->set_contact_monitor(true);
	if (body->get_max_contacts_reported() < FEWEST_CONTACTS) {
		body->set_max_contacts_reported(FEWEST_CONTACTS);
	}
	return true;
}

bool meets(Node *target, Needs needs) {
	switch (needs) {
		case Needs::WINDOW:
			return true;
		case Needs::NOTHING:
			return target != nullptr;
		case Needs::CONTROL:
			return is_any_of<Control>(target);
		case Needs::SOMETHING_SEEN:
			return is_any_of<CanvasItem, Node3D>(target);
		case Needs::PICKABLE:
		case Needs::COLLISION_OBJECT:
			return is_any_of<CollisionObject2D, CollisionObject3D>(target) || (needs == Needs::PICKABLE && is_any_of<Control>(target));
		case Needs::BUTTON:
			return is_any_of<BaseButton>(target);
		case Needs::BODY_OR_AREA:
			return is_any_of<RigidBody2D, RigidBody3D, Area2D, Area3D>(target);
		case Needs::AREA:
			return is_any_of<Area2D, Area3D>(target);
		case Needs::LINE_EDIT:
			return is_any_of<LineEdit>(target);
	}
	return false;
}

MouseButton button_of(const StringName &wanted) {
	if (wanted == StringName("right_pressed")) {
		return MOUSE_BUTTON_RIGHT;
	}
	return wanted == StringName("middle_pressed") ? MOUSE_BUTTON_MIDDLE : MOUSE_BUTTON_LEFT;
}

bool is_system_event(const StringName &name) {
	HashMap<StringName, bool> &known = SharedMachineData::shared().system_events;
	if (const bool *answer = known.getptr(name)) {
		return *answer;
	}
	const MachineNames &names = MachineNames::shared();
	if (CompanionScripts::script(names.system_events_script).is_null()) {
		return false;
	}
	const bool answer = CompanionScripts::call(names.system_events_script, names.is_system_event, Array::make(name)).booleanize();
	known.insert(name, answer);
	return answer;
}

// Whether any of these may be a system event, without asking after one that nobody has asked after yet.
bool listens_to_the_engine(const LocalVector<StringName> &listening) {
	const HashMap<StringName, bool> &known = SharedMachineData::shared().system_events;
	for (const StringName &event : listening) {
		const bool *answer = known.getptr(event);
		if (answer == nullptr || *answer) {
			return true;
		}
	}
	return false;
}

} // namespace

void SCMachine::connect_system_events() {
	MachineRun &its_run = run();
	MachineRun::Busy keep(its_run);
	disconnect_system_events();
	if (!is_inside_tree()) {
		return;
	}
	if (!listens_to_the_engine(its_run.events.listening)) {
		return;
	}
	const LocalVector<StringName> listening(its_run.events.listening);
	const uint32_t this_start = start_count;
	for (const StringName &wanted : listening) {
		const bool is_ours = is_system_event(wanted);
		// A warning may be answered by a game's own logger, and that may do anything.
		if (its_run.machine() == nullptr || start_count != this_start) {
			return;
		}
		if (is_ours && !listen_to_system_event(wanted)) {
			warn_never_sent(wanted);
		}
	}
}

void SCMachine::warn_never_sent(const StringName &wanted) {
	const Node *target = target_node();
	const String machine_name = name_in_messages();
	const String target_name = target != nullptr ? String(target->get_name()) : String("its node");
	const String target_kind = target != nullptr ? "a " + target->get_class() : String("missing");
	const String remedy = CompanionScripts::call(MachineNames::shared().system_events_script, "sent_by", Array::make(wanted));
	UtilityFunctions::push_warning(
			vformat("Machine on %s waits for %s, but %s is %s, which never sends it. That takes %s.", machine_name, wanted, target_name, target_kind, remedy));
}

void SCMachine::disconnect_system_events() {
	presses.clear();
	if (!system_connections.is_made()) {
		return;
	}
	const Array connections = system_connections;
	system_connections.forget();
	for (int64_t i = 0; i < connections.size(); i++) {
		const Array connection = connections[i];
		Object *source = connection.size() == 3 ? connection[0].get_validated_object() : nullptr;
		if (source != nullptr && source->is_connected(connection[1], connection[2])) {
			source->disconnect(connection[1], connection[2]);
		}
	}
}

bool SCMachine::listen_to_system_event(const StringName &wanted) {
	Node *target = target_node();
	const String name = wanted;
	for (const SystemEvent &row : SYSTEM_EVENTS) {
		if (name != row.event || !meets(target, row.needs)) {
			continue;
		}
		if (row.needs == Needs::WINDOW) {
			return is_inside_tree() && hear(get_tree()->get_root(), row.signal, SystemCall::make(row.kind, this, wanted));
		}
		if (row.needs == Needs::PICKABLE || is_mouse_event(row.kind)) {
			make_pickable(target);
		} else if (row.needs == Needs::BODY_OR_AREA && !make_tell_of_contacts<RigidBody2D>(target)) {
			make_tell_of_contacts<RigidBody3D>(target);
		}
		return hear(target, row.signal, SystemCall::make(row.kind, this, wanted));
	}
	return false;
}

bool SCMachine::hear(Object *source, const StringName &signal_name, const Callable &handler) {
	if (source == nullptr || !source->has_signal(signal_name)) {
		return false;
	}
	source->connect(signal_name, handler);
	system_connections->push_back(Array::make(source, signal_name, handler));
	return true;
}

bool SCMachine::make_pickable(Node *node) {
	if (Control *control = Object::cast_to<Control>(node)) {
		if (control->get_mouse_filter() == Control::MOUSE_FILTER_IGNORE) {
			control->set_mouse_filter(Control::MOUSE_FILTER_PASS);
		}
		return true;
	}
	if (CollisionObject2D *object_2d = Object::cast_to<CollisionObject2D>(node)) {
		object_2d->set_pickable(true);
		return true;
	}
	if (CollisionObject3D *object_3d = Object::cast_to<CollisionObject3D>(node)) {
		object_3d->set_ray_pickable(true);
		return true;
	}
	return false;
}

void SCMachine::on_visibility_changed(const StringName &wanted) {
	Node *target = target_node();
	const CanvasItem *node_2d = Object::cast_to<CanvasItem>(target);
	const Node3D *node_3d = Object::cast_to<Node3D>(target);
	if (node_2d == nullptr && node_3d == nullptr) {
		return;
	}
	const bool visible = node_2d != nullptr ? node_2d->is_visible_in_tree() : node_3d->is_visible_in_tree();
	if (wanted == StringName(visible ? "shown" : "hidden")) {
		core_system_event(wanted, Variant());
	}
}

// A press counts where it began, a release only on the target; each event keeps its own note of the
// press, since several of them may wait for the same button.
void SCMachine::on_mouse_button(Object *event, const StringName &wanted) {
	const InputEventMouseButton *button = Object::cast_to<InputEventMouseButton>(event);
	if (button == nullptr || button->get_button_index() != button_of(wanted)) {
		return;
	}
	if (button->is_pressed()) {
		presses.insert(wanted);
		if (wanted == StringName("button_down")) {
			core_system_event(wanted, Variant());
		}
		return;
	}
	const bool was_down = presses.has(wanted);
	presses.erase(wanted);
	const Control *control = Object::cast_to<Control>(target_node());
	const bool is_inside = control == nullptr || Rect2(Vector2(), control->get_size()).has_point(button->get_position());
	const bool is_due = wanted == StringName("button_up") || (was_down && wanted != StringName("button_down"));
	if (is_due && is_inside) {
		core_system_event(wanted, Variant());
	}
}
