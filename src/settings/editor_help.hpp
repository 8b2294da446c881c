#pragma once

// Hands the texts of every class, setting, operation, signal and constant to the editor's own help, which shows them on F1 and in
// the inspector's tooltips. The one place that calls the engine's C interface directly, because the
// bindings have no name for this.

#include <gdextension_interface.h>

#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>

class EditorHelp {
public:
	static void remember_interface(GDExtensionInterfaceGetProcAddress get_proc_address);
	// In the editor only, and only once the editor's help is there to take them.
	static void hand_over_when_ready();
	static godot::String xml_of(const godot::StringName &class_name);

private:
	static void hand_over();
};
