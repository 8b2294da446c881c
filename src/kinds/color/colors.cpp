#include "kinds/color/colors.hpp"

#include "action/words.hpp"

namespace {

String part_in_words(SCSetColorComponentsAction::Part part) {
	const char *parts[] = { "red", "green", "blue", "alpha", "hue", "saturation", "brightness" };
	return parts[CLAMP(int(part), 0, 6)];
}

} // namespace

void SCGetColorComponentsAction::describe(KindTable<Self> &kind) {
	kind.about("color", "get_color_components", "Take a Color apart into floats. Each lies between 0 and 1.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::color>("color", "The colour to take apart, picked here or from a variable.");
	kind.setting<&Self::store_red_in>("store_red_in", "The variable that its red goes into. Empty keeps it nowhere.").optional();
	kind.setting<&Self::store_green_in>("store_green_in", "The variable that its green goes into. Empty keeps it nowhere.").optional();
	kind.setting<&Self::store_blue_in>("store_blue_in", "The variable that its blue goes into. Empty keeps it nowhere.").optional();
	kind.setting<&Self::store_alpha_in>("store_alpha_in", "The variable that its alpha goes into: 0 is see-through, 1 is solid. Empty keeps it nowhere.")
			.optional();
	kind.setting<&Self::store_hue_in>("store_hue_in",
				"The variable that its hue goes into, its place in the rainbow: 0 is red, a third green, two thirds blue. Empty keeps it nowhere.")
			.optional();
	kind.setting<&Self::store_saturation_in>(
				"store_saturation_in", "The variable that its saturation goes into: 0 is grey, 1 is the full colour. Empty keeps it nowhere.")
			.optional();
	kind.setting<&Self::store_brightness_in>("store_brightness_in", "The variable that its brightness goes into: 0 is black. Empty keeps it nowhere.")
			.optional();
}

String SCGetColorComponentsAction::summary_default() {
	const StringName names[] = { store_red_in, store_green_in, store_blue_in, store_alpha_in, store_hue_in, store_saturation_in, store_brightness_in };
	PackedStringArray kept;
	for (int i = 0; i < 7; i++) {
		if (!names[i].is_empty()) {
			kept.push_back(vformat("%s into %s", part_in_words(SCSetColorComponentsAction::Part(i)), names[i]));
		}
	}
	return vformat("Take %s apart: %s", words::text_of(color), kept.is_empty() ? String("nothing kept") : String(", ").join(kept));
}

void SCRandomColorAction::describe(KindTable<Self> &kind) {
	kind.about("color", "random_color", "Put a random colour into a Color variable. The next balloon, a firework, the shirts of a crowd.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<PickFrom>();
	kind.setting<&Self::pick_from>(
			"pick_from", "A Range makes one by hue, saturation and brightness. Between Two mixes two colours. A List takes one of those you choose.");
	kind.setting<&Self::lowest_hue>("lowest_hue", hint::SHARE,
				"Where in the rainbow it may begin: 0 is red, a third green, two thirds blue, and 1 red again. A lowest above the highest goes on through red: "
				"0.9 to 0.1 are the reds.")
			.only_if<&Self::pick_from, A_RANGE>();
	kind.setting<&Self::highest_hue>("highest_hue", hint::SHARE, "Where in the rainbow it ends.").only_if<&Self::pick_from, A_RANGE>();
	kind.setting<&Self::lowest_saturation>("lowest_saturation", hint::SHARE, "The palest it may be: 0 is grey, 1 the full colour.")
			.only_if<&Self::pick_from, A_RANGE>();
	kind.setting<&Self::highest_saturation>("highest_saturation", hint::SHARE, "The strongest it may be.").only_if<&Self::pick_from, A_RANGE>();
	kind.setting<&Self::lowest_brightness>("lowest_brightness", hint::SHARE, "The darkest it may be: 0 is black.").only_if<&Self::pick_from, A_RANGE>();
	kind.setting<&Self::highest_brightness>("highest_brightness", hint::SHARE, "The brightest it may be.").only_if<&Self::pick_from, A_RANGE>();
	kind.setting<&Self::alpha>("alpha", hint::SHARE, "How solid it is: 0 is see-through.").only_if<&Self::pick_from, A_RANGE>();
	kind.setting<&Self::first>("first", "One of the two colours to mix.").only_if<&Self::pick_from, BETWEEN_TWO>();
	kind.setting<&Self::second>("second", "The other.").only_if<&Self::pick_from, BETWEEN_TWO>();
	kind.setting<&Self::colors>("colors", "The colours to choose from. One listed twice comes up twice as often.").only_if<&Self::pick_from, A_LIST>();
	kind.setting<&Self::always_another>("always_another", "Never choose the colour that the variable holds already, so that there is always a change to see.")
			.only_if<&Self::pick_from, A_LIST>();
	kind.setting<&Self::store_in>("store_in", "The variable the colour goes into.");
}

String SCRandomColorAction::summary_default() {
	switch (pick_from) {
		case BETWEEN_TWO:
			return vformat("Mix a random colour of %s and %s into %s", words::text_of(first), words::text_of(second), store_in);
		case A_LIST:
			return vformat("Put one of %d colours into %s", colors.size(), store_in);
		case A_RANGE:
			break;
	}
	return vformat("Put a random colour into %s", store_in);
}

void SCSampleGradientAction::describe(KindTable<Self> &kind) {
	kind.about("color", "sample_gradient",
			"Pick a colour along a Gradient you draw, by a number. A health bar that goes from green to red, the sky through the day, metal that glows as it "
			"heats up.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::gradient>("gradient", "The gradient to pick from.");
	kind.setting<&Self::number>("number", "The number that decides, usually from a variable, such as the health.");
	kind.setting<&Self::at_the_left>("at_the_left", "The number that stands for the left end of the gradient.");
	kind.setting<&Self::at_the_right>(
			"at_the_right", "The number that stands for its right end: 100 for a health from 0 to 100. Numbers beyond the ends get the colour of the end.");
	kind.setting<&Self::store_in>("store_in", "The variable the colour goes into.");
}

String SCSampleGradientAction::summary_default() {
	const String of = gradient.is_valid() ? String("the gradient") : String("no gradient");
	return vformat("Pick the colour of %s for %s into %s", of, words::number(number), store_in);
}

void SCSetColorComponentsAction::describe(KindTable<Self> &kind) {
	kind.about("color", "set_color_components",
			"Change one part of a Color variable and leave the rest as they are. Fade it out, darken it, or let its hue go round.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Part>();
	kind.constants_of<Operation>();
	kind.setting<&Self::variable_name>("variable_name", "The Color variable to change.").written();
	kind.setting<&Self::part>("part",
			"Which part. Alpha is how solid it is, Hue its place in the rainbow, Saturation how strong the colour is and Brightness how far it is from black. "
			"Each lies between 0 and 1. Red, green, blue and brightness may go above 1, for a thing that glows, and a hue goes round.");
	kind.setting<&Self::operation>("operation", "Whether that part becomes Value, has Value added to it, or is multiplied by it.");
	kind.setting<&Self::value>("value", "The number it becomes, or what is added or multiplied by. Type a minus to take away.");
	kind.setting<&Self::per_second>("per_second", "On Every Frame, add this much each second. Add only.")
			.only_if<&Self::operation, ADD>()
			.only_if<&Self::run_mode, EVERY_FRAME>();
}

String SCSetColorComponentsAction::summary_default() {
	const String changed = part_in_words(part);
	switch (operation) {
		case ADD:
			return vformat("Add %s to the %s of %s%s", words::number(value), changed, variable_name, per_second && repeats() ? " each second" : "");
		case MULTIPLY:
			return vformat("Multiply the %s of %s by %s", changed, variable_name, words::number(value));
		case SET:
			break;
	}
	return vformat("Set the %s of %s to %s", changed, variable_name, words::number(value));
}
