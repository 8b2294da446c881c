#include "kinds/conditions/nodes.hpp"

#include "action/action_shared.hpp"
#include "action/words.hpp"
#include "settings/plumbing.hpp"

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

void SCHasChildOfTypeCondition::describe(KindTable<SCHasChildOfTypeCondition> &kind) {
	kind.about("conditions", "has_child_of_type", "True when a node has a node of a kind under it.");
	kind.setting<&SCHasChildOfTypeCondition::node_path>("node_path", "The node to look under. Empty is Self.");
	kind.setting<&SCHasChildOfTypeCondition::type>("type", { PROPERTY_HINT_TYPE_STRING, "Node" }, "The kind of node to look for, such as AudioStreamPlayer, or the class name of a script of yours. Kinds made from it count too: Node2D finds a Sprite2D.");
	kind.setting<&SCHasChildOfTypeCondition::recursive>("recursive", "Look at any depth. Off, only the nodes right under it count.");
}

String SCHasChildOfTypeCondition::summary_default() {
	return vformat("%s has %s %s it", words::name_in_line(node_path), with_article(type), recursive ? "under" : "right under");
}

void SCIsChildOfCondition::describe(KindTable<SCIsChildOfCondition> &kind) {
	kind.about("conditions", "is_child_of", "True when a node is somewhere under another node, as with a crate riding on the lift, a sword held in the hand, a card in the hand and not in the deck, or the body a bullet hit being part of the player.");
	kind.setting<&SCIsChildOfCondition::node_path>("node_path", "The node that may be under the other. Empty is Self.");
	kind.setting<&SCIsChildOfCondition::parent_path>("parent_path", "The node it may be under. Empty is Self.");
	kind.setting<&SCIsChildOfCondition::recursive>("recursive", "Any depth will do. Off, it has to be right under the other.");
}

String SCIsChildOfCondition::summary_default() {
	return vformat("%s is %s %s", words::name_in_line(node_path), recursive ? "under" : "right under", words::name_in_line(parent_path));
}

void SCNodeCondition::describe(KindTable<SCNodeCondition> &kind) {
	kind.about("conditions", "node", "Ask about a node.");
	kind.constants_of<Test>();
	kind.setting<&SCNodeCondition::node_path>("node_path", "The node. Empty is Self.");
	kind.setting<&SCNodeCondition::test>("test", "What to ask. Is There: it is in the scene, and not being removed. Is Visible: neither it nor anything above it is hidden. Is Enabled: it is running, neither disabled nor paused.").relists();
	kind.setting<&SCNodeCondition::group>("group", "The group it has to be in.");
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

void SCNodeCondition::_validate_property(PropertyInfo &property) const {
	if (test != IS_IN_A_GROUP && property.name == StringName("group")) {
		hide_from_inspector(property);
	}
}

void SCPlayingCondition::describe(KindTable<SCPlayingCondition> &kind) {
	kind.about("conditions", "playing", "Ask what an animation or a sound is doing.");
	kind.constants_of<Test>();
	kind.setting<&SCPlayingCondition::node_path>("node_path", "What plays: an AnimationPlayer, an AnimationTree, an animated sprite, a sound or a video. For any other node, the first of these under it. Empty is Self.");
	kind.setting<&SCPlayingCondition::test>("test", "What to ask. Has Ended: it has stopped at its end, for an animation, or plays no more, for a sound. Has Got As Far As: it has come to the fraction below, or has ended.").relists();
	kind.setting<&SCPlayingCondition::fraction>("fraction", hint::SHARE, "How far it has to be: 0.5 is half way, 1 the end. A sound that has ended no longer counts.");
	kind.setting<&SCPlayingCondition::animation_name>("animation_name", "The animation it has to be, such as walk, or the state of an AnimationTree's state machine. Empty is any. A sound has none.");
	kind.setting<&SCPlayingCondition::state_machine>("state_machine", "Which state machine of an AnimationTree to ask, by its name in the tree, such as Attacks. Empty is the tree itself. Only for an AnimationTree.");
}

String SCPlayingCondition::summary_default() {
	const String name = words::name_in_line(node_path);
	const String what = animation_name.is_empty() ? String() : " " + String(animation_name);
	switch (test) {
		case IS_PLAYING:
			return vformat("%s is playing%s", name, what);
		case HAS_ENDED:
			return vformat("%s has ended%s", name, what);
		case HAS_GOT_AS_FAR_AS:
			break;
	}
	return vformat("%s has got as far as %s of %s", name, words::number(fraction), animation_name.is_empty() ? String("what it plays") : String(animation_name));
}

void SCPlayingCondition::_validate_property(PropertyInfo &property) const {
	if (test != HAS_GOT_AS_FAR_AS && property.name == StringName("fraction")) {
		hide_from_inspector(property);
	}
}

void SCPropertyCondition::describe(KindTable<SCPropertyCondition> &kind) {
	kind.about("conditions", "property", "Compare any property of any node with a value.");
	kind.constants_of<Test>();
	kind.setting<&SCPropertyCondition::node_path>("node_path", "The node whose property is looked at. Empty is Self.");
	kind.setting<&SCPropertyCondition::property>("property", "Property name, as it reads when you point at it in the inspector. A colon reaches inside one, as in position:y or material:albedo_color.");
	kind.setting<&SCPropertyCondition::test>("test", "How to compare them. Greater and Less tell numbers apart, texts by the alphabet, and how long a vector is: velocity Greater than 100.").relists();
	kind.setting<&SCPropertyCondition::value>("value", "What to compare it with. A single number for a property with parts, such as scale, stands for every part.");
}

String SCPropertyCondition::summary_default() {
	return vformat("%s of %s %s", or_not_picked(property), words::name_in_line(node_path), comparing::in_words(comparing::Test(test), value));
}

void SCPropertyCondition::_validate_property(PropertyInfo &shown) const {
	if (!comparing::needs_value(comparing::Test(test)) && shown.name == StringName("value")) {
		hide_from_inspector(shown);
	}
}
