#include "kinds/scene/language.hpp"

#include "action/words.hpp"

void SCSetLanguageAction::describe(KindTable<Self> &kind) {
	kind.about("scene", "set_language",
			"Change the language the game is shown in, from the translations the project has, or step on to the next one, as a language button in an Options "
			"menu does. Words that are on the screen change by themselves.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<What>();
	kind.setting<&Self::what>("what",
			"A Language is the one named below. The Next One and The One Before step through those that the project has, and round again. The Computer's is "
			"the one the player's computer is set to, or the one nearest to it.");
	kind.setting<&Self::language>("language", { PROPERTY_HINT_LOCALE_ID }, "The language's short name, such as de, fr or pt_BR.")
			.only_if<&Self::what, A_LANGUAGE>();
	kind.setting<&Self::store_in>("store_in", "Keep the short name of the language that the game then is in, such as de, in this variable.").optional();
	kind.setting<&Self::store_name_in>("store_name_in", "Keep its name in English, such as German, in this variable.").optional();
	kind.setting<&Self::changed_event>("changed_event", "Sent when the language has changed. It carries the short name. Empty sends nothing.").optional();
	kind.setting<&Self::failed_event>("failed_event", "Sent when there is no such translation. Empty sends nothing.").optional();
}

String SCSetLanguageAction::summary_default() {
	switch (what) {
		case THE_NEXT_ONE:
			return "Show the game in the next language";
		case THE_ONE_BEFORE:
			return "Show the game in the language before";
		case THE_COMPUTERS:
			return "Show the game in the computer's language";
		case A_LANGUAGE:
			break;
	}
	return vformat("Show the game in %s", language.is_empty() ? String("(pick one)") : language);
}
