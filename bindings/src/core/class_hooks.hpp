// The callbacks behind a registered class's property hooks, notifications and text: one set for all classes, which asks the hooks of an instance's
// class and of the classes above it. ClassDB hands them to the engine, and only those that some class of the chain defines.

#ifndef GODOT_CPP_SRC_CORE_CLASS_HOOKS_HPP
#define GODOT_CPP_SRC_CORE_CLASS_HOOKS_HPP

#include <godot_cpp/classes/wrapped.hpp>

namespace godot {
namespace internal {

void fill_hooks(const ClassTag *p_tag, GDExtensionClassCreationInfo5 &r_info);

} // namespace internal
} // namespace godot

#endif // GODOT_CPP_SRC_CORE_CLASS_HOOKS_HPP
