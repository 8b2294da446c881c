#include "kinds/data/properties.hpp"

#include "action/action_shared.hpp"
#include "action/words.hpp"

void SCGetPropertyAction::describe(KindTable<SCGetPropertyAction> &kind) {
	kind.about("data", "get_property", "Read any property of any node into one of the machine's variables, such as a position, whether something is visible, or a setting of another plugin's node.");
	kind.setting<&SCGetPropertyAction::node_path>("node_path", "Node to read from. Empty is Self.");
	kind.setting<&SCGetPropertyAction::property>("property", "Property name, as Godot's help writes it, such as visible or global_position. A colon reaches inside one, as in \"position:y\" or \"material:albedo_color\".");
	kind.setting<&SCGetPropertyAction::store_in>("store_in", "The variable the value goes into.");
}

String SCGetPropertyAction::summary_default() {
	const String &gap = ActionShared::get().not_picked;
	return vformat("Keep %s of %s in %s", property.is_empty() ? gap : property, words::name_in_line(node_path), store_in);
}
