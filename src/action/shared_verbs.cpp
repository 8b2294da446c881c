#include "action/shared_verbs.hpp"

#include "action/kind.hpp"
#include "action/storing.hpp"
#include "settings/class_rows.hpp"

#include <godot_cpp/classes/property_tweener.hpp>

namespace verbs {

void warn(SCMachineBase *machine, const Object *kind, const String &what) {
	if (machine == nullptr || kind == nullptr) {
		return;
	}
	const String text = vformat("%s on %s: %s", kind_in_palette(kind), machine->name_in_messages(), what);
	MakerWarnings::once_for(machine, vformat("%d %s", kind->get_instance_id(), what), text);
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
		const String what = path.is_empty() ? String("the Machine has no node to work on") : vformat("there is no node at %s", words::name_in_line(path));
		warn(machine, kind, vformat("%s. Pick one under %s.", what, setting_in_inspector(setting)));
	}
	return node;
}

void warn_wrong_class(SCMachineBase *machine, const Object *kind, const Node *node, const String &a_t, const StringName &setting) {
	warn(machine, kind, vformat("%s is a %s, not %s. Pick %s under %s.", node->get_name(), node->get_class(), a_t, a_t, setting_in_inspector(setting)));
}

void store(SCMachineBase *machine, const StringName &variable, const Variant &value) {
	if (variable.is_empty() || machine == nullptr) {
		return;
	}
	const Variant kept = value.get_type() == Variant::FLOAT ? values::keep_whole(machine, variable, value) : value;
	if (!storing::put(machine, variable, kept)) {
		const String text = vformat("%s on %s holds %s, so %s was not kept in it. Pick a variable of the right kind.", variable, machine->name_in_messages(), values::kind_in_words(machine->get_value(variable)), values::kind_in_words(value));
		MakerWarnings::once_for(machine, vformat("not kept:%s", variable), text);
	}
}

void send(SCMachineBase *machine, const StringName &event, const Variant &data) {
	if (!event.is_empty() && machine != nullptr) {
		machine->send_event(event, data);
	}
}

void store_and_send(SCMachineBase *machine, const StringName &variable, const Variant &value, const StringName &event, const Variant &data) {
	const StillHere here(machine);
	store(machine, variable, value);
	if (here) {
		send(machine, event, data);
	}
}

void finish_unless_repeating(SCMachineBase *machine, SCMachineAction *action, int index, const StillHere &here) {
	if (here && !action->repeats()) {
		machine->finish(index);
	}
}

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
	// Of the machine and not of the node: a node that is freed on its way then ends the tween, where its
	// own tween would go with it and never tell, and hold the state up for ever.
	const Ref<Tween> tween = machine->create_tween();
	const Ref<PropertyTweener> tweener = tween->tween_property(node, property, to, seconds);
	if (tweener.is_valid()) {
		tweener->set_trans(easing.transition);
		tweener->set_ease(easing.ease);
	}
	machine->finish_with_tween(index, tween);
	return tween;
}

} // namespace verbs
