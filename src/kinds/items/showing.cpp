#include "kinds/items/showing.hpp"

#include "action/words.hpp"
#include "inventory/items.hpp"

void SCShowItemAction::describe(KindTable<Self> &kind) {
	kind.about("items", "show_item",
			"Show an item, with its picture on a sprite or a picture box and its name and its line in labels, for a pedestal, a shop shelf, a popup or a "
			"collection page. Without an item they are cleared.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::item>("item", hint::ITEM, "The item.");
	kind.setting<&Self::item_variable>("item_variable", "The item is in this variable, such as the one that Offer Item filled.").optional();
	kind.setting<&Self::picture_path>("picture_path", "The Sprite2D, Sprite3D or TextureRect that shows its picture. Empty shows none.");
	kind.setting<&Self::name_path>("name_path", "The Label, RichTextLabel, Label3D or Button that shows its name. Empty shows none.");
	kind.setting<&Self::line_path>("line_path", "The Label, RichTextLabel, Label3D or Button that shows what it does. Empty shows none.");
	kind.setting<&Self::store_price_in>("store_price_in", "Keep its price in this variable. It is 0 without an item.").optional();
	kind.setting<&Self::store_charge_in>("store_charge_in", "Keep how much charge it needs in this variable. It is 0 without an item.").optional();
	kind.setting<&Self::store_active_in>("store_active_in", "Keep in this variable whether it is used with a button. It is false without an item.").optional();
	kind.warns<&Self::warn>("_warn", "m", "index", "what", "why");
}

String SCShowItemAction::summary_default() {
	PackedStringArray parts;
	if (!picture_path.is_empty()) {
		parts.push_back("picture");
	}
	if (!name_path.is_empty()) {
		parts.push_back("name");
	}
	if (!line_path.is_empty()) {
		parts.push_back("line");
	}
	String shown;
	for (int64_t i = 0; i < parts.size(); i++) {
		const char *before = i == 0 ? "'s " : (i + 1 == parts.size() ? " and " : ", ");
		shown += before + parts[i];
	}
	return vformat("Show %s%s", words::variable_or(item_variable, items::shown_name(item)), shown);
}

void SCShowItemAction::warn(SCMachineBase *machine, int64_t index, int64_t what, const String &why) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	if (what == NO_PICTURE) {
		MakerWarnings::once_for(machine, vformat("show item picture %d:%s", index, why),
				vformat("Show Item on %s: %s, so no picture is shown. Texture wants a Sprite2D, a Sprite3D or a TextureRect.", name, why));
		return;
	}
	const String word = what == NO_NAME ? "Name" : "Line";
	MakerWarnings::once_for(machine, vformat("show item %s %d:%s", word, index, why),
			vformat("Show Item on %s: %s, so the item's %s is not shown. %s wants a Label, a RichTextLabel, a Label3D or a Button.", name, why, word, word));
}
