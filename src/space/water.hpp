#pragma once

// Water is an Area2D or an Area3D with collision shapes. Where it lies, and how deep somebody stands in it, is read off the shapes
// themselves, so that it holds in the very frame it is asked in and for nodes that no area can feel.

#include "action/shared_verbs.hpp"

namespace water {

// The area of that side that a path leads to, or that the node there holds. An empty path is Self, if that is one itself.
Node *area_at(SCMachineBase *machine, const NodePath &path, bool in_2d);
// Whether it can tell who is in it.
bool is_monitoring(const Node *area);
// Whether it feels that body, as of the last physics step.
bool feels(Node *area, Node *body);
// From its surface down to somebody's feet, in metres in 3D and pixels in 2D: the lowest point of their shapes, or where a node
// without any is. 0 for who is not in it, and for a node of the other side.
double depth_of(const Node *someone, const Node *area);
// The same in the water that a setting leads to. Without any it is 0, and the game maker is told, with what that means: "so the
// answer is no".
double depth_or_warn(SCMachineBase *machine, const Object *kind, const Node *someone, const NodePath &path, const StringName &setting, const char *instead);
template <auto Field, class Kind>
double depth_or_warn(SCMachineBase *machine, const Kind *kind, const Node *someone, const char *instead) {
	return depth_or_warn(machine, kind, someone, setting_of<Field>(kind), verbs::name_of<Field>(), instead);
}

} // namespace water
