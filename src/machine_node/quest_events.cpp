// Events that a quest is waiting for pass by the quest book first.

#include "machine/companion_scripts.hpp"
#include "machine/names.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/scene_tree.hpp>

void SCMachineBase::core_quest_heard(const StringName &event_name) {
	SceneTree *tree = is_inside_tree() ? get_tree() : nullptr;
	CompanionScripts::call("quests", MachineNames::shared().heard, Array::make(event_name, tree));
}
