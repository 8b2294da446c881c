#pragma once

// Names that the editor gives to the pieces of a design, so that its lists and heads tell one from another: a state's own name, an
// action's summary. They are shown as the resource's name and left out of every file, unless somebody typed in a name of their own.

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/core/property_info.hpp>

namespace shown_names {

// Does nothing to a resource that has a name of its own.
void show(const godot::Ref<godot::Resource> &resource, const godot::String &name);
// For a class's _validate_property.
void leave_out_of_files(const godot::Object *object, godot::PropertyInfo &property);
void free_shared();

} // namespace shown_names
