// The compiled runtime of Set Language.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/scene/language.hpp"

#include <godot_cpp/classes/os.hpp>
#include <godot_cpp/classes/project_settings.hpp>
#include <godot_cpp/classes/translation_server.hpp>

namespace {

using Kind = SCSetLanguageAction;

// The languages there are words in, by their short names in order. What the game was written in needs no translation.
PackedStringArray languages() {
	PackedStringArray known = TranslationServer::get_singleton()->get_loaded_locales();
	const String written_in = ProjectSettings::get_singleton()->get_setting("internationalization/locale/fallback", "en");
	if (!written_in.is_empty()) {
		known.push_back(written_in);
	}
	known.sort();
	PackedStringArray each;
	for (int64_t i = 0; i < known.size(); i++) {
		if (!each.has(known[i])) {
			each.push_back(known[i]);
		}
	}
	return each;
}

// Of those the one that is most like it; empty when none is even of the same language.
String nearest(const PackedStringArray &known, const String &wanted) {
	const TranslationServer *server = TranslationServer::get_singleton();
	String best;
	int32_t best_likeness = 0;
	for (int64_t i = 0; i < known.size(); i++) {
		const int32_t likeness = server->compare_locales(wanted, known[i]);
		if (likeness > best_likeness) {
			best = known[i];
			best_likeness = likeness;
		}
	}
	return best;
}

String stepped(const PackedStringArray &known, int64_t by) {
	const int64_t at = known.find(nearest(known, TranslationServer::get_singleton()->get_locale()));
	return known[at < 0 ? 0 : (at + by + known.size()) % known.size()];
}

class SetLanguage : public OnceOrRepeating<SetLanguage> {
	// Empty, and told, when there is none.
	static String wanted(SCMachineBase *machine, SCMachineAction *action, const PackedStringArray &known) {
		const auto what = checked::choice<&Kind::what>(machine, action, Kind::A_LANGUAGE);
		if (what == Kind::THE_NEXT_ONE || what == Kind::THE_ONE_BEFORE) {
			return stepped(known, what == Kind::THE_NEXT_ONE ? 1 : -1);
		}
		const bool is_the_computers = what == Kind::THE_COMPUTERS;
		const String asked = (is_the_computers ? OS::get_singleton()->get_locale() : setting_of<&Kind::language>(action)).strip_edges();
		const String found = asked.is_empty() ? String() : nearest(known, asked);
		if (!found.is_empty()) {
			return found;
		}
		if (is_the_computers) {
			return ProjectSettings::get_singleton()->get_setting("internationalization/locale/fallback", "en");
		}
		verbs::warn(machine, action,
				vformat("%s, so the language stays as it is. The project has %s; more are added under Project > Project Settings > Localization.",
						asked.is_empty() ? String("no language is named") : vformat("there is no translation for %s", asked.left(40)),
						String(", ").join(known)));
		return String();
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StillHere here(machine);
		const PackedStringArray known = languages();
		const String language = known.is_empty() ? String() : wanted(machine, action, known);
		if (!here) {
			return;
		}
		if (language.is_empty()) {
			verbs::send<&Kind::failed_event>(machine, action);
			return;
		}
		TranslationServer *server = TranslationServer::get_singleton();
		// Everything on the screen hears of it, and a game's own scripts may.
		server->set_locale(language);
		if (here) {
			verbs::keep_each<&Kind::store_in, &Kind::store_name_in>(machine, action, { language, server->get_locale_name(language) });
		}
		if (here) {
			verbs::send<&Kind::changed_event>(machine, action, language);
		}
	}
};

const AddKinds added = {
	add_kind<SCSetLanguageAction, SetLanguage>(),
};

} // namespace
