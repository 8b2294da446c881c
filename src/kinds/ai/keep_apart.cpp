#include "kinds/ai/keep_apart.hpp"

#include "action/words.hpp"
#include "kinds/ai/mover_settings.hpp"

void SCKeepApartAction::describe(KindTable<Self> &kind) {
	kind.about("ai", "keep_apart",
			"Stop a crowd standing in each other. Each one that runs it gives way to those of the group who come too near, while Chase or another kind walks "
			"it. It "
			"never holds a state up.");
	kind.runs(Runs::ON_AND_ON);
	kind.wants_physics();
	movers::describe_body(kind);
	kind.setting<&Self::crowd_group>("crowd_group", "The group that those who keep apart are in, such as enemies.");
	kind.setting<&Self::personal_space>(
				"personal_space", hint::DISTANCE, "How near another may come before it gives way, from middle to middle, in metres in 3D and pixels in 2D.")
			.px_in_2d();
	kind.setting<&Self::push>("push", { PROPERTY_HINT_RANGE, "0,10,0.01,or_greater,hide_slider" },
				"How fast it gives way to one that stands right in it, in metres a second in 3D and pixels a second in 2D. The farther off the other is, the "
				"slower.")
			.px_in_2d();
	movers::describe_falls(kind);
}

String SCKeepApartAction::summary_default() {
	return vformat("Keep %s clear of the %s", words::number(personal_space), words::picked(crowd_group));
}
