#pragma once

// Whether a property's name ends in "_variable". The engine calls the property hooks of every action
// for every property, loader threads included, and this is what they all ask first.

#include <godot_cpp/variant/string_name.hpp>

bool ends_in_variable(const godot::StringName &name);
