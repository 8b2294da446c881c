// Where the engine enters the library: InitObject in the entry function takes what the engine hands over, and calls the extension's initializer and
// terminator level by level.

#ifndef GODOT_CPP_GODOT_HPP
#define GODOT_CPP_GODOT_HPP

#include <godot_cpp/core/defs.hpp>

#include <gdextension_interface.h>

namespace godot {

enum ModuleInitializationLevel {
	MODULE_INITIALIZATION_LEVEL_CORE = GDEXTENSION_INITIALIZATION_CORE,
	MODULE_INITIALIZATION_LEVEL_SERVERS = GDEXTENSION_INITIALIZATION_SERVERS,
	MODULE_INITIALIZATION_LEVEL_SCENE = GDEXTENSION_INITIALIZATION_SCENE,
	MODULE_INITIALIZATION_LEVEL_EDITOR = GDEXTENSION_INITIALIZATION_EDITOR,
};

namespace internal {

extern GDExtensionInterfaceGetProcAddress get_proc_address;
extern GDExtensionClassLibraryPtr library;
// Tells this library's bindings and callables from those of others.
extern void *token;

} // namespace internal

class GDExtensionBinding {
public:
	using Callback = void (*)(ModuleInitializationLevel p_level);

	class InitObject {
		GDExtensionInterfaceGetProcAddress get_proc_address;
		GDExtensionClassLibraryPtr library;
		GDExtensionInitialization *initialization;
		Callback initializer = nullptr;
		Callback terminator = nullptr;
		ModuleInitializationLevel minimum_level = MODULE_INITIALIZATION_LEVEL_SCENE;

	public:
		InitObject(GDExtensionInterfaceGetProcAddress p_get_proc_address, GDExtensionClassLibraryPtr p_library, GDExtensionInitialization *r_initialization);

		void register_initializer(Callback p_initializer) { initializer = p_initializer; }
		void register_terminator(Callback p_terminator) { terminator = p_terminator; }
		void set_minimum_library_initialization_level(ModuleInitializationLevel p_level) { minimum_level = p_level; }

		// What the entry function returns: false, having said why, when this engine cannot run the extension.
		GDExtensionBool init() const;
	};
};

} // namespace godot

#endif // GODOT_CPP_GODOT_HPP
