#pragma once

// Which settings of a kind the inspector shows, for the _validate_property of kinds whose settings
// depend on one another.

#include <godot_cpp/core/property_info.hpp>

#include <initializer_list>

namespace showing {

// Hides these settings, each with the one that reads it from a variable, unless they mean something now.
void only_if(bool they_count, godot::PropertyInfo &property, std::initializer_list<const char *> settings);

} // namespace showing
