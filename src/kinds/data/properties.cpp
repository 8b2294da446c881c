#include "kinds/data/properties.hpp"

#include "action/words.hpp"

void SCGetPropertyAction::describe(KindTable<Self> &kind) {
	kind.about("data", "get_property",
			"Read any property of any node into one of the machine's variables, such as a position, whether something is visible, or a setting of another "
			"plugin's node.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::node_path>("node_path", "Node to read from. Empty is Self.");
	kind.setting<&Self::property>("property",
			"Property name, as Godot's help writes it, such as visible or global_position. A colon reaches inside one, as in \"position:y\" or "
			"\"material:albedo_color\".");
	kind.setting<&Self::store_in>("store_in", "The variable the value goes into.");
}

String SCGetPropertyAction::summary_default() {
	return vformat("Keep %s of %s in %s", words::picked(property), words::name_in_line(node_path), store_in);
}
