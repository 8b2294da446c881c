#pragma once

// What every Resource has and no game maker needs to see beside a state, an action or a transition.

#include <godot_cpp/core/property_info.hpp>

inline bool is_plumbing(const godot::StringName &property) {
	return property == godot::StringName("resource_local_to_scene") || property == godot::StringName("resource_path") ||
			property == godot::StringName("resource_name");
}

// Hidden, and still stored.
inline void hide_from_inspector(godot::PropertyInfo &property) {
	property.usage &= ~uint32_t(godot::PROPERTY_USAGE_EDITOR);
}
