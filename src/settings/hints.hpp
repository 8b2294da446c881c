#pragma once

// The inspector hints that settings share, so that a distance is edited the same way everywhere.

#include <godot_cpp/classes/global_constants.hpp>

using namespace godot;

struct Hint {
	PropertyHint hint = PROPERTY_HINT_NONE;
	const char *text = "";
	uint32_t usage = PROPERTY_USAGE_DEFAULT;
};

namespace hint {

inline constexpr Hint PLAIN = {};
inline constexpr Hint MULTILINE = { PROPERTY_HINT_MULTILINE_TEXT };
inline constexpr Hint SECONDS = { PROPERTY_HINT_RANGE, "0,60,0.01,or_greater,suffix:s,hide_slider" };
inline constexpr Hint DISTANCE = { PROPERTY_HINT_RANGE, "0,100,0.01,or_greater,hide_slider" };
inline constexpr Hint SPEED = { PROPERTY_HINT_RANGE, "0,100,0.01,or_greater,hide_slider" };
inline constexpr Hint DEGREES = { PROPERTY_HINT_RANGE, "-360,360,0.1,or_less,or_greater,suffix:°" };
inline constexpr Hint SHARE = { PROPERTY_HINT_RANGE, "0,1,0.01" };
inline constexpr Hint PERCENT = { PROPERTY_HINT_RANGE, "0,100,1,suffix:%" };
// A control of the project's input map, or any other word for an input.
inline constexpr Hint INPUT = { PROPERTY_HINT_INPUT_NAME, "show_builtin,loose_mode" };
inline constexpr Hint CHANCE = { PROPERTY_HINT_RANGE, "0,100,0.1,or_greater,hide_slider" };
inline constexpr Hint HEALTH = { PROPERTY_HINT_RANGE, "0,1000,0.1,or_greater,hide_slider" };
inline constexpr Hint HOW_MANY = { PROPERTY_HINT_RANGE, "1,100,1,or_greater,hide_slider" };
inline constexpr Hint HOW_MANY_OR_ALL = { PROPERTY_HINT_RANGE, "0,100,1,or_greater,hide_slider" };
// What the addon's own resources are, which its scripts declare.
inline constexpr Hint ITEM = { PROPERTY_HINT_RESOURCE_TYPE, "SCItem" };
inline constexpr Hint ITEMS = { PROPERTY_HINT_TYPE_STRING, "24/17:SCItem" };
inline constexpr Hint QUEST = { PROPERTY_HINT_RESOURCE_TYPE, "SCQuest" };
inline constexpr Hint DIALOGUE = { PROPERTY_HINT_RESOURCE_TYPE, "SCDialogue" };
inline constexpr Hint DATA = { PROPERTY_HINT_RESOURCE_TYPE, "SCData" };
inline constexpr Hint DATA_TABLE = { PROPERTY_HINT_RESOURCE_TYPE, "SCDataTable" };
inline constexpr Hint NEITHER_STORED_NOR_SHOWN = { PROPERTY_HINT_NONE, "", PROPERTY_USAGE_NONE };

} // namespace hint
