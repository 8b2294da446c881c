#include "action/shared_verbs.hpp"

#include "action/kind.hpp"
#include "action/machines.hpp"
#include "action/spaces.hpp"
#include "action/storing.hpp"
#include "action/told_path.hpp"
#include "machine/machine_run.hpp"
#include "settings/class_rows.hpp"

#include <godot_cpp/classes/method_tweener.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/classes/property_tweener.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

// " (state Open, in /root/House/Door)": what of it is known.
String place_of(SCMachineBase *machine) {
	PackedStringArray told;
	const StringName state = machines::name_of_state(machine->running_state());
	if (!state.is_empty()) {
		told.push_back(vformat("state %s", state));
	}
	const Node *target = machine->target_node();
	const Node *node = target != nullptr ? target : machine;
	if (node->is_inside_tree()) {
		told.push_back(vformat("in %s", node->get_path()));
	}
	return told.is_empty() ? String() : vformat(" (%s)", String(", ").join(told));
}

} // namespace

namespace verbs {

void warn(SCMachineBase *machine, const Object *kind, const String &what) {
	if (machine == nullptr || kind == nullptr) {
		return;
	}
	const String text = vformat("%s on %s%s: %s", kind_in_palette(kind), machine->name_in_messages(), place_of(machine), what);
	MakerWarnings::once_for(machine, vformat("%d %s", kind->get_instance_id(), what), text);
}

void warn_whole(SCMachineBase *machine, const Object *kind, int which, const String &sentence) {
	if (machine != nullptr && kind != nullptr) {
		MakerWarnings::once_for(machine, vformat("%s:%d:%d", kind->get_class(), kind->get_instance_id(), which), sentence);
	}
}

String kind_in_palette(const Object *kind) {
	return String(Kind::of(kind).name()).trim_prefix("SC").trim_suffix("Action").trim_suffix("Condition").capitalize();
}

String setting_in_inspector(const StringName &setting) {
	return String(setting).capitalize();
}

Node *node_or_warn(SCMachineBase *machine, const Object *kind, const NodePath &path, const StringName &setting) {
	Node *node = values::node_of(machine, path);
	if (node == nullptr) {
		const String what = path.is_empty() ? String("the Machine has no node to work on") : vformat("there is no node at %s", words::told_path(path));
		warn(machine, kind, vformat("%s. Pick one under %s.", what, setting_in_inspector(setting)));
	}
	return node;
}

void warn_wrong_class(SCMachineBase *machine, const Object *kind, const Node *node, const String &a_t, const StringName &setting) {
	warn(machine, kind, vformat("%s is a %s, not %s. Pick %s under %s.", node->get_name(), node->get_class(), a_t, a_t, setting_in_inspector(setting)));
}

bool keep(SCMachineBase *machine, const Object *kind, const StringName &variable, const Variant &answer, const StringName &setting, const char *what) {
	if (variable.is_empty()) {
		warn(machine, kind, vformat("there is nowhere to put %s, so it was lost. Pick a variable under %s.", what, setting_in_inspector(setting)));
		return false;
	}
	if (storing::put(machine, variable, answer.get_type() == Variant::FLOAT ? values::keep_whole(machine, variable, answer) : answer)) {
		return true;
	}
	warn(machine, kind,
			vformat("%s holds %s, which cannot become %s, so it was left as it is. Pick another variable under %s, or change its type under Variables.",
					variable, values::kind_in_words(machine->get_value(variable)), values::kind_in_words(answer), setting_in_inspector(setting)));
	return false;
}

void let_go(SCMachineBase *machine, const StringName &variable) {
	if (!variable.is_empty() && machine->get_value(variable).get_type() == Variant::OBJECT) {
		machine->set_value(variable, Variant());
	}
}

void send(SCMachineBase *machine, const StringName &event, const Variant &data) {
	if (!event.is_empty() && machine != nullptr) {
		machine->send_event(event, data);
	}
}

void finish_unless_repeating(SCMachineBase *machine, SCMachineAction *action, int index, const StillHere &here) {
	if (here && !action->repeats()) {
		machine->finish(index);
	}
}

namespace {

// A 3D node outside the tree, or within a size of 0, has no place in the world, and giving it one is an engine error. It goes on
// once it is back.
void set_in_world(const Variant &value, uint64_t node_id, const NodePath &property) {
	Node *node = Object::cast_to<Node>(ObjectDB::get_instance(ObjectID(node_id)));
	const Node3D *node_3d = Object::cast_to<Node3D>(node);
	if (node_3d != nullptr && node->is_inside_tree() && spaces::has_a_way_back(spaces::parent_of(node_3d).basis)) {
		node->set_indexed(property, value);
	}
}

template <class Tweener>
void shape(const Ref<Tweener> &tweener, const Easing &easing) {
	if (tweener.is_valid()) {
		tweener->set_trans(easing.transition);
		tweener->set_ease(easing.ease);
	}
}

Ref<Tween> tween_of(SCMachineBase *machine, Node *node, const PropertyTween &does) {
	const Ref<Tween> tween = machine->create_tween();
	const Easing easing = { Tween::TransitionType(does.transition), Tween::EaseType(does.ease) };
	if (Object::cast_to<Node3D>(node) != nullptr && String(does.property).begins_with("global_")) {
		const Callable step = callable_mp_static(&set_in_world).bind(node->get_instance_id(), does.property);
		shape(tween->tween_method(step, does.from, does.to, does.seconds), easing);
	} else {
		shape(tween->tween_property(node, does.property, does.to, does.seconds), easing);
	}
	return tween;
}

// A tween reads where it starts as it takes its first step.
void tween_again(SCMachineBase *machine, int index, const PropertyTween &does, double elapsed) {
	const StillHere here(machine);
	Node *node = Object::cast_to<Node>(ObjectDB::get_instance(does.node));
	if (node == nullptr || !(does.seconds > 0.0) || !machine->is_inside_tree()) {
		machine->finish(index);
		return;
	}
	node->set_indexed(does.property, does.from);
	if (!here || ObjectDB::get_instance(does.node) == nullptr) {
		return;
	}
	const Ref<Tween> tween = tween_of(machine, node, does);
	machine->finish_with_tween(index, tween);
	machine->run().note_tweened(index, does);
	tween->custom_step(elapsed);
}

[[maybe_unused]] const bool takes_tweens_up = (PropertyTween::start_again = &tween_again, true);

} // namespace

Ref<Tween> tween_property(SCMachineBase *machine, int index, Node *node, const NodePath &property, const Variant &to, double seconds, const Easing &easing) {
	if (machine == nullptr || node == nullptr) {
		return Ref<Tween>();
	}
	if (seconds <= 0.0 || !machine->is_inside_tree()) {
		const StillHere here(machine);
		node->set_indexed(property, to);
		if (here) {
			machine->finish(index);
		}
		return Ref<Tween>();
	}
	PropertyTween does;
	does.node = ObjectID(node->get_instance_id());
	does.property = property;
	does.from = node->get_indexed(property);
	does.to = to;
	does.seconds = seconds;
	does.transition = easing.transition;
	does.ease = easing.ease;
	// Of the machine and not of the node: a node that is freed on its way then ends the tween, where its
	// own tween would go with it and never tell, and hold the state up for ever.
	const Ref<Tween> tween = tween_of(machine, node, does);
	machine->finish_with_tween(index, tween);
	machine->run().note_tweened(index, does);
	return tween;
}

} // namespace verbs
