#pragma once

// Hands the texts of every class and setting to the editor's own help, which shows them on F1 and in
// the inspector's tooltips. The one place that calls the engine's C interface directly, because the
// bindings have no name for this.

#include <gdextension_interface.h>

#include <godot_cpp/variant/string.hpp>

struct ClassRow;

class EditorHelp {
public:
	static void remember_interface(GDExtensionInterfaceGetProcAddress get_proc_address);
	// In the editor only, and only once the editor's help is there to take them.
	static void hand_over_when_ready();
	static godot::String xml_of(const ClassRow &row);

private:
	static void hand_over();
};
