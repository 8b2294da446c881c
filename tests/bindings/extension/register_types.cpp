#include "node_probe.hpp"
#include "value_probe.hpp"

#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/godot.hpp>

using namespace godot;
using namespace bindings_test;

namespace {

void initialize(ModuleInitializationLevel level) {
	if (level != MODULE_INITIALIZATION_LEVEL_SCENE) {
		return;
	}
	GDREGISTER_CLASS(BindingsCounted);
	GDREGISTER_CLASS(BindingsValues);
	GDREGISTER_CLASS(BindingsNode);
}

void terminate(ModuleInitializationLevel) {}

} // namespace

extern "C" GDE_EXPORT GDExtensionBool quillstead_bindings_test_init(
		GDExtensionInterfaceGetProcAddress get_proc_address, GDExtensionClassLibraryPtr library, GDExtensionInitialization *initialization) {
	GDExtensionBinding::InitObject init(get_proc_address, library, initialization);
	init.register_initializer(initialize);
	init.register_terminator(terminate);
	init.set_minimum_library_initialization_level(MODULE_INITIALIZATION_LEVEL_SCENE);
	return init.init();
}
