#include "register_types.hpp"

#include "action/action_shared.hpp"
#include "debug_drawings.hpp"
#include "design/sc_machine_event.hpp"
#include "design/sc_machine_note.hpp"
#include "design/sc_machine_parallel_state.hpp"
#include "design/sc_machine_state.hpp"
#include "design/sc_machine_template.hpp"
#include "design/sc_machine_transition.hpp"
#include "design/sc_machine_variable.hpp"
#include "editor_help.hpp"
#include "kinds/color.hpp"
#include "kinds/conditions.hpp"
#include "kinds/conditions_machine.hpp"
#include "kinds/conditions_nodes.hpp"
#include "kinds/conditions_space.hpp"
#include "kinds/conditions_text.hpp"
#include "kinds/data.hpp"
#include "kinds/data_easing.hpp"
#include "kinds/data_lists.hpp"
#include "kinds/data_numbers.hpp"
#include "kinds/data_properties.hpp"
#include "kinds/data_text.hpp"
#include "kinds/data_vectors.hpp"
#include "kinds/flow.hpp"
#include "kinds/flow_events.hpp"
#include "kinds/flow_testing.hpp"
#include "kinds/input.hpp"
#include "kinds/logic.hpp"
#include "kinds/logic_values.hpp"
#include "kinds/loop.hpp"
#include "kinds/machine.hpp"
#include "kinds/node.hpp"
#include "kinds/time.hpp"
#include "kinds/transform_moving.hpp"
#include "kinds/transform_paths.hpp"
#include "kinds/transform_sizing.hpp"
#include "kinds/transform_turning.hpp"
#include "kinds/ui.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/compiled_design.hpp"
#include "machine/debugger_channel.hpp"
#include "machine/event_state.hpp"
#include "machine/game_clock.hpp"
#include "machine/names.hpp"
#include "machine/script_methods.hpp"
#include "machine_node/shared_machine_data.hpp"
#include "native_files.hpp"
#include "native_names.hpp"
#include "sc_action.hpp"
#include "sc_condition.hpp"
#include "sc_fast_lane.hpp"
#include "sc_machine.hpp"
#include "sc_machine_base.hpp"
#include "sc_machine_core.hpp"
#include "sc_native_actions.hpp"
#include "settings/class_rows.hpp"

using namespace godot;

namespace {

template <class... Classes>
void register_classes() {
	(ClassDB::register_class<Classes>(), ...);
}

// Wait first and Assert last, the rest by name. A kind that is not built is not in the list.
void register_kinds() {
	GDREGISTER_INTERNAL_CLASS(SCDebugDrawings2D);
	GDREGISTER_INTERNAL_CLASS(SCDebugDrawings3D);
	register_classes<
			SCWaitAction,
			SCArrayAction,
			SCBoolOperatorAction,
			SCCancelDelayedEventsAction,
			SCChanceCondition,
			SCCheckAction,
			SCClampAction,
			SCCompareCondition,
			SCDictionaryAction,
			SCDistanceCondition,
			SCDrawDebugAction,
			SCEaseAlongCurveAction,
			SCEaseVariableAction,
			SCEnableMachineAction,
			SCEventOnInputAction,
			SCEventOnSignalAction,
			SCFileExistsCondition,
			SCFollowPathAction,
			SCForEachAction,
			SCFormatStringAction,
			SCForwardEventsAction,
			SCGetColorComponentsAction,
			SCGetEventDataAction,
			SCGetInputVectorAction,
			SCGetLastEventAction,
			SCGetPreviousStateAction,
			SCGetPropertyAction,
			SCGetStateAction,
			SCGetTimeAction,
			SCGetVectorComponentsAction,
			SCGoToPreviousStateAction,
			SCGoToStateAction,
			SCHasChildOfTypeCondition,
			SCInStateCondition,
			SCInputCondition,
			SCIsChildOfCondition,
			SCLookAtAction,
			SCMachineVariableAction,
			SCMathAction,
			SCMoveToAction,
			SCNextFrameEventAction,
			SCNodeCondition,
			SCOnScreenCondition,
			SCPathProgressAction,
			SCPlayingCondition,
			SCPointerOverUiCondition,
			SCPrintAction,
			SCPropertyCondition,
			SCPunchAction,
			SCRandomColorAction,
			SCRandomEventAction,
			SCRandomNumberAction,
			SCRandomSeedAction,
			SCRandomVectorAction,
			SCRepeatAction,
			SCRotateAction,
			SCRotateToAction,
			SCRunTemplateAction,
			SCSampleGradientAction,
			SCScaleToAction,
			SCSendEventAction,
			SCSequenceAction,
			SCSetColorComponentsAction,
			SCSetPropertyAction,
			SCSetTimeScaleAction,
			SCSetVariableAction,
			SCSetVectorComponentsAction,
			SCSetVisibleAction,
			SCStringAction,
			SCStringCompareCondition,
			SCStringToNumberAction,
			SCSubStateFinishedCondition,
			SCSwitchAction,
			SCTimeoutCondition,
			SCTimerAction,
			SCToGlobalAction,
			SCToLocalAction,
			SCTouchingCondition,
			SCTranslateAction,
			SCVariableChangedCondition,
			SCVariableCondition,
			SCVectorAction,
			SCAssertAction>();
}

} // namespace

void register_all_natives() {
	register_core_natives();
	register_visible_natives();
	register_signal_natives();
	register_property_natives();
	register_math_natives();
	register_input_natives();
	register_check_natives();
	register_testing_natives();
	register_switching_natives();
	register_run_template_natives();
	register_machine_natives();
	register_loop_natives();
	register_flow_natives();
	register_data_list_natives();
	register_data_table_natives();
	register_easing_natives();
	register_get_property_natives();
	register_number_natives();
	register_text_natives();
	register_vector_natives();
	register_questions_about_machines();
	register_questions_about_nodes();
	register_questions_about_playing();
	register_questions_about_space();
	register_questions_about_text();
	register_questions_about_touching();
	register_color_natives();
	register_time_natives();
	register_transform_moving_natives();
	register_transform_paths_natives();
	register_transform_sizing_natives();
	register_transform_turning_natives();
}

void initialize_quillstead(ModuleInitializationLevel level) {
	if (level != MODULE_INITIALIZATION_LEVEL_SCENE) {
		return;
	}
	// Known to the engine and open to be extended, but not offered to be created.
	GDREGISTER_VIRTUAL_CLASS(SCFastLane);
	GDREGISTER_VIRTUAL_CLASS(SCMachineCore);
	GDREGISTER_VIRTUAL_CLASS(SCMachineBase);
	register_classes<
			SCMachine,
			SCMachineAction,
			SCMachineCondition,
			SCMachineTransition,
			SCMachineVariable,
			SCMachineEvent,
			SCMachineNote,
			SCMachineState,
			SCMachineParallelState,
			SCMachineTemplate>();
	register_kinds();
	EditorHelp::hand_over_when_ready();
}

// Every process-wide table goes, so that a reload starts clean.
void terminate_quillstead(ModuleInitializationLevel level) {
	if (level != MODULE_INITIALIZATION_LEVEL_SCENE) {
		return;
	}
	EventRegistry::free_shared();
	ScriptMethods::free_shared();
	CompiledDesign::free_shared();
	SCNativeActions::free_shared();
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
	ClassRows::free_shared();
}

extern "C" {

GDExtensionBool GDE_EXPORT quillstead_core_init(GDExtensionInterfaceGetProcAddress get_proc_address, GDExtensionClassLibraryPtr library, GDExtensionInitialization *initialization) {
	EditorHelp::remember_interface(get_proc_address);
	GDExtensionBinding::InitObject init(get_proc_address, library, initialization);
	init.register_initializer(initialize_quillstead);
	init.register_terminator(terminate_quillstead);
	init.set_minimum_library_initialization_level(MODULE_INITIALIZATION_LEVEL_SCENE);
	return init.init();
}
}
