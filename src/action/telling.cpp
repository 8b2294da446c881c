#include "action/telling.hpp"

#include "action/action_shared.hpp"
#include "action/words.hpp"
#include "machine/companion_scripts.hpp"
#include "settings/class_rows.hpp"

namespace telling {

void once(const SCMachineAction *action, SCMachineBase *machine, int which, const String &text) {
	if (machine != nullptr) {
		MakerWarnings::once_for(machine, vformat("%s:%d:%d", action->get_class(), action->get_instance_id(), which), text);
	}
}

String event_in_words(const StringName &event) {
	return event.is_empty() ? String("nothing") : String(event);
}

String picked(const StringName &name) {
	return name.is_empty() ? ActionShared::get().not_picked : String(name);
}

String listed(const Array &names) {
	PackedStringArray words;
	for (int64_t i = 0; i < names.size(); i++) {
		words.push_back(picked(words::text_of(names[i])));
	}
	return String(", ").join(words);
}

} // namespace telling
