#include "kinds/physics/swim.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCSwimAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "swim",
			"Let a character move through water without falling through it. While it is in the water it weighs nothing and sinks or rises at a speed of its "
			"own; "
			"outside it falls as ever. It never holds a state up and stands beside the Move Character that does the moving.");
	kind.runs(Runs::ON_AND_ON);
	kind.wants_physics();
	kind.setting<&Self::body_path>("body_path", "The character body that swims: a CharacterBody2D or a CharacterBody3D. Empty is Self.");
	kind.setting<&Self::water_path>("water_path",
			"The water: an Area2D or an Area3D with a collision shape and Monitoring on, or a node that holds one, such as a Terrain with a lake or sea.");
	kind.setting<&Self::settles_at>("settles_at", { PROPERTY_HINT_RANGE, "-100,100,0.01,or_less,or_greater,hide_slider" },
				"How fast it sinks by itself, in metres a second in 3D and pixels a second in 2D. Below zero it rises, and zero stays at its depth.")
			.px_in_2d();
	kind.setting<&Self::up_input>("up_input", hint::INPUT, "The input to swim up with. Empty is none.").optional();
	kind.setting<&Self::down_input>("down_input", hint::INPUT, "The input to dive with. Empty is none.").optional();
	kind.setting<&Self::swim_speed>(
				"swim_speed", hint::SPEED, "How fast it goes up and down by those inputs, in metres a second in 3D and pixels a second in 2D.")
			.px_in_2d();
	kind.setting<&Self::entered_event>("entered_event", "The event to send as it gets into the water.");
	kind.setting<&Self::left_event>("left_event", "The event to send as it gets out of the water.");
	kind.warns<&Self::warn_swim>("_warn_swim", "m", "index", "what", "node");
}

String SCSwimAction::summary_default() {
	return vformat("Swim in %s", words::name_in_line(water_path, "Self", "the water"));
}

void SCSwimAction::warn_swim(SCMachineBase *machine, int64_t, int64_t what, Node *node) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	const StringName named = node != nullptr ? node->get_name() : StringName();
	String sentence;
	switch (what) {
		case NO_CHARACTER:
			sentence = vformat("Swim on %s: %s is not a character body, and only a CharacterBody2D or CharacterBody3D can swim.", name, named);
			break;
		case NOBODY:
			sentence = vformat("Swim on %s: there is no node at %s, so nothing swims. Pick the character body under Body.", name,
					body_path.is_empty() ? String("Self") : String(body_path));
			break;
		case NO_WATER:
			sentence =
					vformat("Swim on %s: Water is not an Area and holds none, and without one there is nothing to say where the water is. Pick an Area2D or an "
							"Area3D with a collision shape, or a Terrain with a lake or sea.",
							name);
			break;
		case NOT_MONITORING:
			sentence = vformat("Swim on %s: %s has Monitoring off, so it cannot tell who is in the water. Tick Monitoring on it.", name, named);
			break;
		default:
			return;
	}
	verbs::warn_whole(machine, this, int(what), sentence);
}
