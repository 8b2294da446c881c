#include "kinds/node/tweening.hpp"

#include "action/action_shared.hpp"
#include "kinds/node/free_values.hpp"

void SCTweenPropertyAction::describe(KindTable<Self> &kind) {
	kind.about("node", "tween_property",
			"Ease any property to a value over time. A light that dims, a panel that fades, a camera that widens its view, a bar that fills.");
	kind.runs_for_a_while<&Self::duration>();
	kind.setting<&Self::node_path>("node_path", "The node whose property changes. Empty is Self.").relists();
	kind.setting<&Self::property>("property",
			"Property name, such as modulate, light_energy or value. A colon reaches inside one, as in \"position:y\" or \"modulate:a\". It has to be one with "
			"values in between: a number, a vector, a color, a turn.");
	kind.setting<&Self::to>(
			"to", "The value it ends at. A single number for a property with parts, such as scale, stands for every part, and a node for where it is.");
	kind.setting<&Self::relative>("relative", "Change it by that much from where it is, where off ends at the value itself.");
	kind.setting<&Self::duration>("duration", hint::SECONDS, "Seconds the change takes. Zero sets it at once.");
	Easings::describe<&Self::curve, &Self::easing>(kind).only_if<&Self::duration>();
}

String SCTweenPropertyAction::summary_default() {
	const String shown = property.is_empty() ? ActionShared::get().not_picked : words::property_in_line(property);
	const String value = to.get_type() == Variant::NIL ? String("nothing") : words::text_of(to);
	return vformat("Ease %s of %s %s %s in %s s", shown, words::name_in_line(node_path), relative ? "by" : "to", value, words::number(duration));
}

void SCTweenPropertyAction::read_variables_default(SCMachineBase *machine) {
	free_values::read(this, machine, { { verbs::name_of<&Self::to>(), to } });
}
