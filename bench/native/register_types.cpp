#include "bare_characters.hpp"
#include "bare_lane.hpp"
#include "bare_spawner.hpp"
#include "bare_terrain.hpp"
#include "bindings_node.hpp"
#include "by_hand_node.h"
#include "empty_calls.hpp"
#include "probe.hpp"

#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/godot.hpp>

using namespace godot;

namespace {

GDExtensionInterfaceGetProcAddress interface_of_engine = nullptr;
GDExtensionClassLibraryPtr own_library = nullptr;

void initialize(ModuleInitializationLevel level) {
	if (level == MODULE_INITIALIZATION_LEVEL_SCENE) {
		GDREGISTER_CLASS(BenchBareCharacters);
		GDREGISTER_CLASS(BenchBareLane);
		GDREGISTER_CLASS(BenchBareSpawner);
		GDREGISTER_CLASS(BenchBareTerrain);
		GDREGISTER_CLASS(BenchBindingsNode);
		GDREGISTER_CLASS(BenchEmptyCalls);
		GDREGISTER_CLASS(BenchProbe);
		register_by_hand_node(interface_of_engine, own_library);
	}
}

void terminate(ModuleInitializationLevel level) {
	if (level == MODULE_INITIALIZATION_LEVEL_SCENE) {
		unregister_by_hand_node();
	}
}

} // namespace

extern "C" GDE_EXPORT GDExtensionBool quillstead_bench_init(
		GDExtensionInterfaceGetProcAddress get_proc_address, GDExtensionClassLibraryPtr library, GDExtensionInitialization *initialization) {
	interface_of_engine = get_proc_address;
	own_library = library;
	GDExtensionBinding::InitObject init(get_proc_address, library, initialization);
	init.register_initializer(initialize);
	init.register_terminator(terminate);
	init.set_minimum_library_initialization_level(MODULE_INITIALIZATION_LEVEL_SCENE);
	return init.init();
}
