#include "kinds/physics/set_collision.hpp"

#include "action/words.hpp"

namespace {

using Kind = SCSetCollisionAction;

constexpr Hint LAYERS = { PROPERTY_HINT_LAYERS_3D_PHYSICS };

// "be on 1, 3 and World"
String layers_in_words(int64_t layers, const String &names) {
	PackedStringArray each;
	for (int i = 0; i < 32; i++) {
		if ((layers >> i & 1) != 0) {
			each.push_back(itos(i + 1));
		}
	}
	if (!names.strip_edges().is_empty()) {
		each.push_back(names.strip_edges());
	}
	return each.is_empty() ? String("none") : String(", ").join(each);
}

String change_in_words(Kind::Change change, const char *what, const String &layers) {
	switch (change) {
		case Kind::SET:
			return vformat("set its %s to %s", what, layers);
		case Kind::ADD:
			return vformat("add %s to its %s", layers, what);
		case Kind::REMOVE:
			return vformat("take %s from its %s", layers, what);
		case Kind::LEAVE_THEM:
			break;
	}
	return String();
}

} // namespace

void SCSetCollisionAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "collision",
			"Switch a node's collision on or off, or change which layers it is on and which it bumps into, with the layers picked by name, such as World, "
			"Player, "
			"Enemies and Pickups.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<Collision>();
	kind.constants_of<Change>();
	kind.setting<&Self::node_path>(
			"node_path", "A body, an area, a single collision shape, a tile map layer, or anything else that has collision layers. Empty is Self.");
	kind.setting<&Self::collision>("collision", "Whether to switch its collision: of a body or an area all of its shapes, of a shape just that one.");
	kind.setting<&Self::change_layers>("change_layers", "What to do with the layers it is on, by which others find it. Set takes just those below.");
	kind.setting<&Self::collision_layer>("collision_layer", LAYERS, "The layers it is on, to be put on, or to be taken off.")
			.unless<&Self::change_layers, LEAVE_THEM>();
	kind.setting<&Self::layer_names>(
				"layer_names", "More layers for that, by their names in Project Settings or their numbers, with commas between: World, Player.")
			.optional()
			.unless<&Self::change_layers, LEAVE_THEM>();
	kind.setting<&Self::change_mask>("change_mask", "What to do with the layers it looks at, where it bumps into things. Set takes just those below.");
	kind.setting<&Self::collision_mask>("collision_mask", LAYERS, "The layers it looks at, is to look at too, or is to look at no more.")
			.unless<&Self::change_mask, LEAVE_THEM>();
	kind.setting<&Self::mask_names>(
				"mask_names", "More layers for that, by their names in Project Settings or their numbers, with commas between: Enemies, Pickups.")
			.optional()
			.unless<&Self::change_mask, LEAVE_THEM>();
	kind.setting<&Self::put_back_when_left>("put_back_when_left", "Put everything back as it was when the state is left.");
}

String SCSetCollisionAction::summary_default() {
	PackedStringArray done;
	if (collision != LEAVE_AS_IT_IS) {
		done.push_back(collision == ON ? "switch its collision on" : "switch its collision off");
	}
	if (change_layers != LEAVE_THEM) {
		done.push_back(change_in_words(change_layers, "layers", layers_in_words(collision_layer, layer_names)));
	}
	if (change_mask != LEAVE_THEM) {
		done.push_back(change_in_words(change_mask, "mask", layers_in_words(collision_mask, mask_names)));
	}
	const String all = done.is_empty() ? String("leave its collision as it is") : String(", ").join(done);
	return vformat("%s: %s%s", words::name_in_line(node_path), all, put_back_when_left ? " while the state runs" : "");
}
