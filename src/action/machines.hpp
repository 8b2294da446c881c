#pragma once

// The machines and states that a kind means: by a path to a node, and by name in a sentence.

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/variant/node_path.hpp>
#include <godot_cpp/variant/string_name.hpp>

using namespace godot;

class SCMachine;
class SCMachineBase;

namespace machines {

// The machine on the node, or on one of the nodes it sits under; null when there is none. An empty path
// leads nowhere.
SCMachine *at(SCMachineBase *machine, const NodePath &path);
// Empty for no state.
StringName name_of_state(const Ref<Resource> &state);

} // namespace machines
