#include "kinds/transform/paths.hpp"

namespace {

constexpr char ALONG_DOC[] = "The Path2D or Path3D. Empty is the one that the node lies in, as a PathFollow does.";

String path_in_line(const NodePath &path) {
	return words::name_in_line(path, "Self", "its path");
}

} // namespace

void SCFollowPathAction::describe(KindTable<Self> &kind) {
	kind.about("transform", "follow_path",
			"Move along a path drawn in the scene, a Path2D or Path3D. A moving platform, a train, a guard on a round, the camera of a cutscene. A "
			"PathFollow2D or PathFollow3D in the path is moved by its own Progress.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.constants_of<AtTheEnd>();
	kind.constants_of<Start>();
	kind.setting<&Self::node_path>("node_path", "The node that moves. Empty is Self.");
	kind.setting<&Self::along_path>("along_path", ALONG_DOC);
	kind.setting<&Self::speed>("speed", hint::SPEED, "How fast it goes, in metres a second in 3D and pixels a second in 2D.")
			.px_in_2d()
			.unless<&Self::duration>();
	kind.setting<&Self::duration>("duration", hint::SECONDS, "Seconds for the whole path instead, however long it is. Zero goes by Speed.");
	Easings::describe<&Self::curve, &Self::easing>(kind).only_if<&Self::duration>().only_if<&Self::at_the_end, STOP>();
	kind.setting<&Self::start>("start", "Whether it is put at the beginning of the path, or starts at the spot of the path nearest to where it is.");
	kind.setting<&Self::at_the_end>("at_the_end",
			"Stop finishes there. Start Over jumps back to the beginning, which nobody sees on a path that is a ring. Go Back turns round at each end.");
	kind.setting<&Self::backward>("backward", "Go from the end of the path to its beginning.");
	kind.setting<&Self::turn_to_face>("turn_to_face", "Turn it to face the way it goes: its right side in 2D, its front in 3D.");
	kind.setting<&Self::end_event>("end_event", "Sent each time it gets to an end of the path. Empty sends nothing.").optional();
}

String SCFollowPathAction::summary_default() {
	const String pace = duration > 0.0 ? vformat("in %s s", words::number(duration)) : vformat("at %s a second", words::number(speed));
	const char *after = at_the_end == START_OVER ? ", over and over" : (at_the_end == GO_BACK ? ", there and back" : "");
	const String event = end_event.is_empty() ? String() : vformat(", sending %s at the end", end_event);
	return vformat("Move %s along %s %s%s%s", words::name_in_line(node_path), path_in_line(along_path), pace, after, event);
}

String SCFollowPathAction::holds_its_state_default() {
	return at_the_end == STOP
			? ""
			: "It goes along the path for as long as the state runs. Set At The End to Stop, or move on with its End Event or an event sent after a Delay";
}

void SCPathProgressAction::describe(KindTable<Self> &kind) {
	kind.about("transform", "distance_along_path",
			"Find out how far along a path something has got, however it got there. The places in a race, a progress bar over a track, the bomb cart on its "
			"rails. It goes by the spot of the path that is nearest; a PathFollow2D or PathFollow3D in the path tells its own Progress.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Measure>();
	kind.setting<&Self::node_path>("node_path", "The node to measure. Empty is Self.");
	kind.setting<&Self::along_path>("along_path", ALONG_DOC);
	kind.setting<&Self::measure>(
			"measure", "How it is told: the distance along the path in metres or pixels, its share of the way from 0 to 1, or from 0 to 100.");
	kind.setting<&Self::store_in>("store_in", "The variable that how far it has got goes into.");
	kind.setting<&Self::store_length_in>("store_length_in", "The variable that the length of the whole path goes into. Empty keeps it nowhere.").optional();
	kind.setting<&Self::store_place_in>(
				"store_place_in", "The variable that the nearest spot of the path goes into, as a place in the world. Empty keeps it nowhere.")
			.optional();
	kind.setting<&Self::store_off_path_in>("store_off_path_in",
				"The variable that its distance from the path goes into, so that a car off the road can be slowed down. Empty keeps it nowhere.")
			.optional();
}

String SCPathProgressAction::summary_default() {
	const char *how = measure == SHARE ? "its share of the way" : (measure == PERCENT ? "its percentage of the way" : "how far it is");
	if (store_in.is_empty() && !(store_length_in.is_empty() && store_place_in.is_empty() && store_off_path_in.is_empty())) {
		return vformat("Measure %s along %s", words::name_in_line(node_path), path_in_line(along_path));
	}
	return vformat("Measure %s along %s, %s, into %s", words::name_in_line(node_path), path_in_line(along_path), how, store_in);
}
