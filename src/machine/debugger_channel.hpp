#pragma once

// The game's end of the editor's machine panel: builds and sends what a machine reports, and takes
// the panel's orders. Everything here is shared by all machines and does nothing without a debugger.

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

class MachineRun;

class DebuggerChannel {
public:
	// Called once a frame, so that every other place can go by MachineRun::debugger_active.
	static void refresh_active();

	static void state(MachineRun &run, const Ref<Resource> &now, const Ref<Resource> &previous);
	static void paused(MachineRun &run, const Ref<Resource> &state);
	static void events(MachineRun &run, const StringName &name, const Variant &data, bool global);
	// Says nothing while the panel watches another machine.
	static void values(MachineRun &run);
	static void actions(MachineRun &run);

	// Takes the panel's orders from now on. A machine asks for it as it becomes ready.
	static void listen();
	// A machine that becomes ready while the panel already watches its path.
	static void mark_if_watched(MachineRun &run);
	// Answers whether the message is one of ours.
	static bool take_message(const String &message, const Array &data);
	static void start_reporting();
	static void report_watched();

	static void free_shared();

private:
	static void stop_listening();
	static void watch(const String &text);
};
