#pragma once

// What the compiled conditions share: how one gets at the node or the variable it is about. Without it the answer is no, and the
// game maker is told once why.

#include "action/shared_verbs.hpp"

namespace conditions {

// Null when the path leads nowhere, or when the variable it is read from holds no node.
Node *node(SCMachineBase *machine, const SCMachineCondition *condition, const NodePath &path, const StringName &setting);
template <auto Field>
Node *node(SCMachineBase *machine, const SCMachineCondition *condition) {
	return node(machine, condition, setting_of<Field>(condition), verbs::name_of<Field>());
}

// What the variable holds. False when none is named, or one that the machine does not have.
bool read(SCMachineBase *machine, const SCMachineCondition *condition, const StringName &variable, Variant &held);
template <auto Field>
bool read(SCMachineBase *machine, const SCMachineCondition *condition, Variant &held) {
	return read(machine, condition, setting_of<Field>(condition), held);
}

} // namespace conditions
