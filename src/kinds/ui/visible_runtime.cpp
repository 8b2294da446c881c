// The compiled runtime of Set Visible. A fade and what it keeps about its node are the node's own, in
// metadata: it goes on when the state that began it has been left, and whoever shows or hides the node
// next finds it there.

#include "action/add_kind.hpp"
#include "action/native_calls.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "kinds/ui/visible.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/canvas_item.hpp>
#include <godot_cpp/classes/control.hpp>
#include <godot_cpp/classes/property_tweener.hpp>
#include <godot_cpp/classes/tween.hpp>
#include <godot_cpp/classes/window.hpp>

#include <cmath>

namespace {

struct Names {
	StringName fade = "quillstead_fade";
	StringName fading_in = "quillstead_fading_in";
	StringName alpha = "quillstead_alpha";
	StringName mouse_filter = "quillstead_mouse_filter";
	StringName input_watch = "quillstead_input_watch";
	StringName input_inside = "quillstead_input_inside";

	StringName blink_node = "blink_node";
	StringName was_visible = "was_visible";
	StringName blink_time = "blink_time";

	StringName visible = "visible";
	StringName visibility_changed = "visibility_changed";
	StringName finished = "finished";
	NodePath modulate_alpha = NodePath("modulate:a");
};

const Names &names() {
	return NativeNames::of<Names>();
}

bool is_main_window(const Node *node) {
	return node->get_parent() == nullptr && Object::cast_to<Window>(node) != nullptr;
}

bool can_be_shown(const Node *node) {
	return node != nullptr && !is_main_window(node) && node->get(names().visible).get_type() == Variant::BOOL;
}

void show_at_once(Node *node, bool on) {
	if (CanvasItem *item = Object::cast_to<CanvasItem>(node)) {
		item->set_visible(on);
	} else {
		node->set(names().visible, on);
	}
}

double alpha_of(const CanvasItem *item) {
	return item->get_modulate().a;
}

void set_alpha(CanvasItem *item, double alpha) {
	Color colour = item->get_modulate();
	colour.a = float(alpha);
	item->set_modulate(colour);
}

bool is_fading(const Node *node) {
	return node->has_meta(names().fade);
}

bool is_fading_out(const Node *node) {
	return is_fading(node) && !node->get_meta(names().fading_in, true).booleanize();
}

bool is_blocked(const Node *node) {
	return node->has_meta(names().input_inside);
}

// A fading node counts as what it is on its way to.
bool is_shown(const Node *node) {
	return is_fading(node) ? !is_fading_out(node) : node->get(names().visible).booleanize();
}

void hear_visibility(Node *node);

void watch(CanvasItem *item) {
	if (item->has_meta(names().input_watch)) {
		return;
	}
	const Callable heard = NodeCall::make("Set Visible: shown again", item, hear_visibility);
	item->set_meta(names().input_watch, heard);
	item->connect(names().visibility_changed, heard);
}

void stop_watching_if_idle(CanvasItem *item) {
	if (is_fading(item) || is_blocked(item) || !item->has_meta(names().input_watch)) {
		return;
	}
	const Callable heard = item->get_meta(names().input_watch, Callable());
	item->remove_meta(names().input_watch);
	if (item->is_connected(names().visibility_changed, heard)) {
		item->disconnect(names().visibility_changed, heard);
	}
}

// Answers how see-through the node was designed, which it is left to the caller to put back.
double take_fade_off(CanvasItem *item) {
	const Ref<Tween> tween = item->get_meta(names().fade, Variant());
	const double designed = item->get_meta(names().alpha, alpha_of(item));
	for (const StringName &key : { names().fade, names().fading_in, names().alpha }) {
		item->remove_meta(key);
	}
	stop_watching_if_idle(item);
	if (tween.is_valid() && tween->is_valid()) {
		tween->kill();
	}
	return designed;
}

void end_fade(Node *node) {
	CanvasItem *item = Object::cast_to<CanvasItem>(node);
	if (item != nullptr && is_fading(item)) {
		set_alpha(item, take_fade_off(item));
	}
}

void finish_fade(Node *node) {
	CanvasItem *item = Object::cast_to<CanvasItem>(node);
	if (item == nullptr || !is_fading(item)) {
		return;
	}
	const Weak<CanvasItem> held(item);
	const bool fading_out = is_fading_out(item);
	const double designed = take_fade_off(item);
	// Hidden first, so that it does not flash up.
	if (fading_out) {
		item->set_visible(false);
	}
	if (CanvasItem *still_there = held.get()) {
		set_alpha(still_there, designed);
	}
}

void fade(CanvasItem *item, bool in, double seconds) {
	const Weak<CanvasItem> held(item);
	const bool was_fading = is_fading(item);
	const double now = item->is_visible() ? alpha_of(item) : 0.0;
	double designed = was_fading ? take_fade_off(item) : alpha_of(item);
	if (in && designed <= 0.0) {
		// Something designed to be seen through altogether could never be faded in.
		designed = 1.0;
	}
	if (in) {
		set_alpha(item, now);
		item->set_visible(true);
		item = held.get();
		if (item == nullptr) {
			return;
		}
	}
	const Ref<Tween> tween = item->create_tween();
	if (tween.is_null()) {
		set_alpha(item, designed);
		show_at_once(item, in);
		return;
	}
	tween->tween_property(item, names().modulate_alpha, in ? designed : 0.0, seconds);
	tween->connect(names().finished, NodeCall::make("Set Visible: fade done", item, finish_fade));
	item->set_meta(names().fade, tween);
	item->set_meta(names().fading_in, in);
	item->set_meta(names().alpha, designed);
	watch(item);
}

struct ControlIds {
	LocalVector<ObjectID> list;

	explicit ControlIds(const Node *top) { add_below(top); }
	void add_below(const Node *node) {
		for (int i = 0; i < node->get_child_count(); i++) {
			Node *child = node->get_child(i);
			if (Object::cast_to<Control>(child) != nullptr) {
				list.push_back(ObjectID(child->get_instance_id()));
			}
			add_below(child);
		}
	}
};

// Taking the focus away tells a game about it.
void make_deaf(Control *control, Dictionary kept) {
	kept[control->get_instance_id()] = Array::make(int64_t(control->get_mouse_filter()), int64_t(control->get_focus_mode()));
	control->set_mouse_filter(Control::MOUSE_FILTER_IGNORE);
	control->set_focus_mode(Control::FOCUS_NONE);
}

void block_input(Control *control) {
	if (is_blocked(control)) {
		return;
	}
	const ControlIds inside(control);
	Dictionary kept;
	control->set_meta(names().mouse_filter, int64_t(control->get_mouse_filter()));
	control->set_meta(names().input_inside, kept);
	watch(control);
	make_deaf(control, kept);
	for (const ObjectID id : inside.list) {
		if (Control *below = Object::cast_to<Control>(ObjectDB::get_instance(id))) {
			make_deaf(below, kept);
		}
	}
}

void let_input_through(Node *node) {
	if (!is_blocked(node)) {
		return;
	}
	const Dictionary kept = node->get_meta(names().input_inside, Dictionary());
	node->remove_meta(names().input_inside);
	node->remove_meta(names().mouse_filter);
	if (CanvasItem *item = Object::cast_to<CanvasItem>(node)) {
		stop_watching_if_idle(item);
	}
	const Array ids = kept.keys();
	for (int64_t i = 0; i < ids.size(); i++) {
		const Array was = kept[ids[i]];
		const Weak<Control> held(Object::cast_to<Control>(ObjectDB::get_instance(ObjectID(uint64_t(ids[i])))));
		if (Control *control = held.get()) {
			control->set_mouse_filter(Control::MouseFilter(int64_t(was[0])));
		}
		if (Control *control = held.get()) {
			control->set_focus_mode(Control::FocusMode(int64_t(was[1])));
		}
	}
}

// The node has been shown or hidden, by whatever it was, or something it is in has.
void hear_visibility(Node *node) {
	const Weak<CanvasItem> held(Object::cast_to<CanvasItem>(node));
	CanvasItem *item = held.get();
	if (item != nullptr && is_fading(item) && !item->is_visible()) {
		end_fade(item);
	}
	item = held.get();
	if (item != nullptr && item->is_visible() && !is_fading_out(item)) {
		let_input_through(item);
	}
}

class SetVisible : public SCNativeAction {
	using Kind = SCSetVisibleAction;

	static Node *node_of(SCMachineBase *machine, SCMachineAction *action, int index) {
		Node *node = values::node_of(machine, setting_of<&Kind::node_path>(action));
		if (!can_be_shown(node)) {
			verbs::say<&Kind::warn_set>(action, machine, index);
			return nullptr;
		}
		return node;
	}

	static bool wanted(const SCMachineAction *action, const Node *node) {
		const auto what = setting_of<&Kind::what>(action);
		return what == Kind::TOGGLE ? !is_shown(node) : what == Kind::SHOW;
	}

	static void show(SCMachineAction *action, Node *node, bool on) {
		const Weak<Node> held(node);
		const double seconds = setting_of<&Kind::fade_seconds>(action);
		const bool blocks = setting_of<&Kind::block_input_when_hidden>(action);
		if (is_shown(node) == on) {
			if (seconds <= 0.0) {
				finish_fade(node);
			}
			return;
		}
		Control *control = Object::cast_to<Control>(node);
		if (!on && blocks && control != nullptr) {
			block_input(control);
		} else if (on) {
			let_input_through(node);
		}
		node = held.get();
		CanvasItem *item = Object::cast_to<CanvasItem>(node);
		if (item != nullptr && seconds > 0.0 && item->is_inside_tree()) {
			fade(item, on, seconds);
		} else if (node != nullptr) {
			end_fade(node);
			show_at_once(node, on);
		}
	}

	static void start_blinking(SCMachineBase *machine, SCMachineAction *action, int index, Node *node) {
		const Weak<Node> held(node);
		const bool on = wanted(action, node);
		Dictionary slot = machine->slot(index);
		slot[names().was_visible] = is_shown(node);
		slot[names().blink_node] = node;
		slot[names().blink_time] = 0.0;
		finish_fade(node);
		if (Node *still_there = held.get()) {
			show_at_once(still_there, on);
		}
	}

	static Node *blinking_node(const Dictionary &slot) {
		const Variant node = slot.get(names().blink_node, Variant());
		return node.get_type() == Variant::OBJECT ? Object::cast_to<Node>(node.get_validated_object()) : nullptr;
	}

	static void blink(Dictionary slot, double every, double delta) {
		double time = values::as_number(slot.get(names().blink_time, 0.0)) + delta;
		const double flips = std::floor(time / every);
		if (flips >= 1.0) {
			time -= flips * every;
		}
		slot[names().blink_time] = time;
		Node *node = blinking_node(slot);
		if (node != nullptr && std::fmod(flips, 2.0) >= 1.0) {
			show_at_once(node, !node->get(names().visible).booleanize());
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		const double blink_every = setting_of<&Kind::blink_every>(action);
		const bool repeats = blink_every > 0.0 || action->run_mode == SCMachineAction::EVERY_FRAME;
		if (Node *node = node_of(machine, action, index)) {
			if (blink_every > 0.0) {
				start_blinking(machine, action, index, node);
			} else {
				show(action, node, wanted(action, node));
			}
		}
		if (here && !repeats) {
			machine->finish(index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const double blink_every = setting_of<&Kind::blink_every>(action);
		Dictionary slot = machine->slot(index);
		if (slot.has(names().blink_node)) {
			if (blink_every > 0.0) {
				blink(slot, blink_every, delta);
			}
		} else if (action->run_mode == SCMachineAction::EVERY_FRAME) {
			if (Node *node = node_of(machine, action, index)) {
				show(action, node, wanted(action, node));
			}
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override {
		const Dictionary slot = machine->slot(index);
		if (Node *node = blinking_node(slot)) {
			show_at_once(node, slot.get(names().was_visible, true).booleanize());
		}
	}
};

const AddKinds added = {
	add_kind<SCSetVisibleAction, SetVisible>(),
};

} // namespace
