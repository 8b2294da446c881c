#pragma once

// How a question gets at the node it is about. One that cannot find its node is answered with no, and the
// game maker is told once why.

#include "action/shared_verbs.hpp"

namespace asking_nodes {

// Null when the path leads nowhere, or when the variable it is read from holds no node.
Node *found(SCMachineBase *machine, const SCMachineCondition *condition, const NodePath &path, const StringName &setting);
template <class T>
T *found_as(SCMachineBase *machine, const SCMachineCondition *condition, const NodePath &path, const StringName &setting, const String &a_t) {
	Node *node = found(machine, condition, path, setting);
	T *wanted = Object::cast_to<T>(node);
	if (node != nullptr && wanted == nullptr) {
		verbs::warn_wrong_class(machine, condition, node, a_t, setting);
	}
	return wanted;
}

// False, and said once, when the question names no variable or one that the machine does not have.
bool has_variable(SCMachineBase *machine, const SCMachineCondition *condition, const StringName &variable);

} // namespace asking_nodes
