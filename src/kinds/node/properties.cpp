#include "kinds/node/properties.hpp"

#include "action/action_shared.hpp"
#include "action/reading.hpp"
#include "action/shared_verbs.hpp"

void SCSetPropertyAction::describe(KindTable<Self> &kind) {
	kind.about("node", "set_property", "Set any property on any node, such as visible, modulate, text, speed, or whatever the node has.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::node_path>("node_path", "Node to change. Empty is Self, the node this Machine works on.");
	kind.setting<&Self::property>("property", "Property name. A colon reaches inside one, as in \"position:y\" or \"material:albedo_color\".");
	kind.setting<&Self::value>("value", "What to set it to. A single number for a property with parts, such as scale, sets every part to it.");
	kind.warns<&Self::warn_set>("_warn_set", "m", "index");
	kind.warns<&Self::say_cannot>("_say_cannot", "m", "node", "why");
}

String SCSetPropertyAction::summary_default() {
	const String shown = property.is_empty() ? ActionShared::get().not_picked : words::property_in_line(property);
	return vformat("Set %s of %s to %s", shown, words::name_in_line(node_path), value.get_type() == Variant::NIL ? String("nothing") : words::text_of(value));
}

// The value is fitted to the property, not to what happens to be typed in beside it.
void SCSetPropertyAction::read_variables_default(SCMachineBase *machine) {
	const StringName &setting = verbs::name_of<&Self::value>();
	const StringName variable = from_variables.get(setting, StringName());
	if (variable.is_empty() || machine == nullptr) {
		SCMachineAction::read_variables_default(machine);
		return;
	}
	if (from_variables.size() > 1) {
		Dictionary others = from_variables.duplicate();
		others.erase(setting);
		reading::read_variables_into(this, others, typed_in, machine);
	}
	if (!typed_in.has(setting)) {
		typed_in[setting] = value;
	}
	value = values::value_of(machine, typed_in[setting], variable);
}

void SCSetPropertyAction::warn_set(SCMachineBase *machine, int) {
	const Node *node = verbs::node_or_warn<&Self::node_path>(machine, this);
	if (node != nullptr && property.is_empty()) {
		verbs::warn(machine, this, vformat("it has no property of %s to set, so it did nothing. Type one under Property.", node->get_name()));
	}
}

void SCSetPropertyAction::say_cannot(SCMachineBase *machine, const Node *node, const String &why) {
	if (node != nullptr) {
		verbs::warn(machine, this,
				vformat("it could not set %s of %s, because %s, so nothing was set. Pick another under Property, or change Value.", property, node->get_name(),
						why));
	}
}
