#pragma once

// What the compiled questions share: how one gets at the node or the variable it is about. Without it
// the answer is no, and the game maker is told once why.

#include "action/shared_verbs.hpp"

namespace conditions {

// Null when the path leads nowhere, or when the variable it is read from holds no node.
Node *node(SCMachineBase *machine, const SCMachineCondition *condition, const NodePath &path, const StringName &setting);
template <class T>
T *node_as(SCMachineBase *machine, const SCMachineCondition *condition, const NodePath &path, const StringName &setting, const String &a_t) {
	Node *found = node(machine, condition, path, setting);
	T *wanted = Object::cast_to<T>(found);
	if (found != nullptr && wanted == nullptr) {
		verbs::warn_wrong_class(machine, condition, found, a_t, setting);
	}
	return wanted;
}

// False when none is named, or one that the machine does not have.
bool has_variable(SCMachineBase *machine, const SCMachineCondition *condition, const StringName &variable);

} // namespace conditions
