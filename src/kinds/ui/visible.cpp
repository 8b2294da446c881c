#include "kinds/ui/visible.hpp"

#include "action/shared_verbs.hpp"

void SCSetVisibleAction::describe(KindTable<Self> &kind) {
	kind.about("ui", "set_visible",
			"Show or hide anything, such as a menu, a panel, a health bar or a sprite. With a fade it slides in or out and does not pop. A fade goes from how "
			"see-through it is now to how it was designed, so a panel made half see-through comes back half see-through. Starting a fade ends one still "
			"running on the same node, and showing something already shown or hiding something already hidden does nothing. Blink Every keeps it flashing for "
			"as long as the state runs, for an alarm light or a warning. The action then never finishes, the way one on Every Tick does not, and leaving the "
			"state puts it back as it was before.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<What>();
	kind.setting<&Self::node_path>("node_path", "The node to show or hide. Leave empty for Self, the node this Machine works on.");
	kind.setting<&Self::what>("what", "Show it, hide it, or flip whichever it is now.");
	kind.setting<&Self::fade_seconds>(
				"fade_seconds", hint::SECONDS, "Seconds to fade over. Zero shows or hides it at once. A 3D node has no fade, so it is shown or hidden at once.")
			.unless<&Self::blink_every>();
	kind.setting<&Self::block_input_when_hidden>("block_input_when_hidden",
				"Also stop it, and the buttons in it, answering the mouse and the keyboard while it fades away and while hidden, so a menu on its way out "
				"cannot be clicked twice. Shown again, it answers as it was set to.")
			.unless<&Self::blink_every>();
	kind.setting<&Self::blink_every>("blink_every", hint::SECONDS,
			"Keep flipping it between shown and hidden, this many seconds apart, for as long as the state runs. It suits an alarm light, or a warning that "
			"flashes. It starts the way Show, Hide or Toggle says. Zero shows or hides it once. Leaving the state puts it back as it was before the blinking "
			"began.");
	kind.warns<&Self::warn_set>("_warn_set", "m", "index");
}

String SCSetVisibleAction::summary_default() {
	const String name = words::name_in_line(node_path);
	const char *word = what == SHOW ? "Show" : (what == HIDE ? "Hide" : "Toggle");
	if (blink_every > 0.0) {
		return vformat("%s %s and blink it every %s s", word, name, words::number(blink_every));
	}
	const String fade = fade_seconds > 0.0 ? vformat(" over %s s", words::number(fade_seconds)) : String();
	return vformat("%s %s%s", word, name, fade);
}

String SCSetVisibleAction::holds_its_state_default() {
	return blink_every > 0.0 ? "It blinks for as long as the state runs. Set Blink Every to 0, or move on with an event sent after a Delay" : "";
}

void SCSetVisibleAction::warn_set(SCMachineBase *machine, int) {
	if (const Node *node = verbs::node_or_warn<&Self::node_path>(machine, this)) {
		verbs::warn_wrong_class(machine, this, node, "something that can be shown and hidden", verbs::name_of<&Self::node_path>());
	}
}
