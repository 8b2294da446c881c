#include "kinds/conditions/nodes.hpp"

#include "action/action_shared.hpp"
#include "action/comparing.hpp"
#include "action/words.hpp"

namespace {

// The summary's own gap: a plain text that is missing is not found by the line's.
String or_not_picked(const String &text) {
	return text.is_empty() ? ActionShared::get().not_picked : text;
}

String with_article(const String &type) {
	const bool vowel = !type.is_empty() && String("AEIOUaeiou").contains(type.substr(0, 1));
	return (vowel ? "an " : "a ") + or_not_picked(type);
}

} // namespace

void SCHasChildOfTypeCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "has_child_of_type", "True when a node has a node of a kind under it.");
	kind.setting<&Self::node_path>("node_path", "The node to look under. Empty is Self.");
	kind.setting<&Self::type>("type", { PROPERTY_HINT_TYPE_STRING, "Node" },
			"The kind of node to look for, such as AudioStreamPlayer, or the class name of a script of yours. Kinds made from it count too: Node2D finds a "
			"Sprite2D.");
	kind.setting<&Self::recursive>("recursive", "Look at any depth. Off, only the nodes right under it count.");
}

String SCHasChildOfTypeCondition::summary_default() {
	return vformat("%s has %s %s it", words::name_in_line(node_path), with_article(type), recursive ? "under" : "right under");
}

void SCIsChildOfCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "is_child_of",
			"True when a node is somewhere under another node, as with a crate riding on the lift, a sword held in the hand, a card in the hand and not in the "
			"deck, or the body a bullet hit being part of the player.");
	kind.setting<&Self::node_path>("node_path", "The node that may be under the other. Empty is Self.");
	kind.setting<&Self::parent_path>("parent_path", "The node it may be under. Empty is Self.");
	kind.setting<&Self::recursive>("recursive", "Any depth will do. Off, it has to be right under the other.");
}

String SCIsChildOfCondition::summary_default() {
	return vformat("%s is %s %s", words::name_in_line(node_path), recursive ? "under" : "right under", words::name_in_line(parent_path));
}

void SCNodeCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "node", "Ask about a node.");
	kind.constants_of<Test>();
	kind.setting<&Self::node_path>("node_path", "The node. Empty is Self.");
	kind.setting<&Self::test>("test",
			"What to ask. Is There: it is in the scene, and not being removed. Is Visible: neither it nor anything above it is hidden. Is Enabled: it is "
			"running, neither disabled nor paused.");
	kind.setting<&Self::group>("group", "The group it has to be in.").only_if<&Self::test, IS_IN_A_GROUP>();
}

String SCNodeCondition::summary_default() {
	const String name = words::name_in_line(node_path);
	switch (test) {
		case IS_THERE:
			return vformat("%s is there", name);
		case IS_IN_A_GROUP:
			return vformat("%s is in %s", name, group);
		case IS_VISIBLE:
			return vformat("%s is visible", name);
		case IS_ENABLED:
			break;
	}
	return vformat("%s is enabled", name);
}

void SCPropertyCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "property", "Compare any property of any node with a value.");
	kind.constants_of<Test>();
	kind.setting<&Self::node_path>("node_path", "The node whose property is looked at. Empty is Self.");
	kind.setting<&Self::property>("property",
			"Property name, as it reads when you point at it in the inspector. A colon reaches inside one, as in position:y or material:albedo_color.");
	kind.setting<&Self::test>(
			"test", "How to compare them. Greater and Less tell numbers apart, texts by the alphabet, and how long a vector is: velocity Greater than 100.");
	kind.setting<&Self::value>("value", "What to compare it with. A single number for a property with parts, such as scale, stands for every part.")
			.unless<&Self::test, IS_TRUE, IS_FALSE>();
}

String SCPropertyCondition::summary_default() {
	return vformat("%s of %s %s", or_not_picked(property), words::name_in_line(node_path), comparing::in_words(comparing::Test(test), value));
}
