#include "register_types.hpp"

#include "action/action_shared.hpp"
#include "action/add_kind.hpp"
#include "action/sc_action.hpp"
#include "action/sc_condition.hpp"
#include "action/sc_native_actions.hpp"
#include "character/body_notes.hpp"
#include "character/gravity.hpp"
#include "design/sc_machine_event.hpp"
#include "design/sc_machine_note.hpp"
#include "design/sc_machine_parallel_state.hpp"
#include "design/sc_machine_state.hpp"
#include "design/sc_machine_template.hpp"
#include "design/sc_machine_transition.hpp"
#include "design/sc_machine_variable.hpp"
#include "design_check/design_check.hpp"
#include "fast_lane/sc_fast_lane.hpp"
#include "kinds/flow/debug_drawings.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/compiled_design.hpp"
#include "machine/debugger_channel.hpp"
#include "machine/event_state.hpp"
#include "machine/game_clock.hpp"
#include "machine/names.hpp"
#include "machine/native_names.hpp"
#include "machine/script_methods.hpp"
#include "machine_node/sc_machine.hpp"
#include "machine_node/sc_machine_base.hpp"
#include "machine_node/sc_machine_core.hpp"
#include "machine_node/shared_machine_data.hpp"
#include "settings/class_rows.hpp"
#include "settings/editor_help.hpp"
#include "settings/shown_names.hpp"
#include "terrain/sc_terrain_work.hpp"

using namespace godot;

namespace {

template <class... Classes>
void register_classes() {
	(ClassDB::register_class<Classes>(), ...);
}

} // namespace

void initialize_quillstead(ModuleInitializationLevel level) {
	if (level != MODULE_INITIALIZATION_LEVEL_SCENE) {
		return;
	}
	// Known to the engine and open to be extended, but not offered to be created.
	GDREGISTER_VIRTUAL_CLASS(SCFastLane);
	GDREGISTER_VIRTUAL_CLASS(SCMachineCore);
	GDREGISTER_VIRTUAL_CLASS(SCMachineBase);
	GDREGISTER_VIRTUAL_CLASS(SCTerrainWork);
	register_classes<SCMachine, SCMachineAction, SCMachineCondition, SCMachineTransition, SCMachineVariable, SCMachineEvent, SCMachineNote, SCMachineState,
			SCMachineParallelState, SCMachineTemplate>();
	GDREGISTER_INTERNAL_CLASS(SCDebugDrawings2D);
	GDREGISTER_INTERNAL_CLASS(SCDebugDrawings3D);
	register_kinds();
	design_check::register_check();
	EditorHelp::hand_over_when_ready();
}

// Every process-wide table goes, so that a reload starts clean.
void terminate_quillstead(ModuleInitializationLevel level) {
	if (level != MODULE_INITIALIZATION_LEVEL_SCENE) {
		return;
	}
	SCMachine::stop_all_before_unloading();
	design_check::free_shared();
#ifdef DEBUG_ENABLED
	design_check::forget_what_was_told();
#endif
	EventRegistry::free_shared();
	ScriptMethods::free_shared();
	CompiledDesign::free_shared();
	SCNativeActions::free_shared();
	body_notes::free_shared();
	gravity::forget_project();
	NativeNames::free_shared();
	ActionShared::free_shared();
	SCMachineCore::free_shared();
	SCFastLane::free_shared();
	GameClocks::free_shared();
	DebuggerChannel::free_shared();
	SharedMachineData::free_shared();
	CompanionScripts::free_shared();
	RunScratch::free_shared();
	MachineNames::free_shared();
	shown_names::free_shared();
	ClassRows::free_shared();
}

extern "C" {

GDExtensionBool GDE_EXPORT quillstead_core_init(
		GDExtensionInterfaceGetProcAddress get_proc_address, GDExtensionClassLibraryPtr library, GDExtensionInitialization *initialization) {
	EditorHelp::remember_interface(get_proc_address);
	GDExtensionBinding::InitObject init(get_proc_address, library, initialization);
	init.register_initializer(initialize_quillstead);
	init.register_terminator(terminate_quillstead);
	init.set_minimum_library_initialization_level(MODULE_INITIALIZATION_LEVEL_SCENE);
	return init.init();
}
}
