#include "machine/debugger_channel.hpp"

#include "machine/debugger_messages.hpp"
#include "machine/machine_run.hpp"
#include "machine/names.hpp"
#include "machine_node/sc_machine_base.hpp"
#include "machine_node/shared_machine_data.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/engine_debugger.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/timer.hpp>
#include <godot_cpp/classes/window.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>
#include <godot_cpp/variant/typed_dictionary.hpp>

namespace messages = debugger_messages;

namespace {

constexpr double SECONDS_BETWEEN_REPORTS = 0.2;

struct Panel {
	// A part of the watched machine's path, empty while none is watched.
	String watched;
	ObjectID timer;
	bool listening = false;
};

Panel *shared_panel = nullptr;

Panel &panel() {
	if (shared_panel == nullptr) {
		shared_panel = memnew(Panel);
	}
	return *shared_panel;
}

bool is_watching() {
	return shared_panel != nullptr && !shared_panel->watched.is_empty();
}

SceneTree *scene_tree() {
	return Object::cast_to<SceneTree>(Engine::get_singleton()->get_main_loop());
}

bool may_report(const MachineRun &run) {
	return MachineRun::debugger_active && run.machine() != nullptr;
}

// A machine outside the tree has no path; its name is the most that can be said.
String path_of(const SCMachineBase *machine) {
	return machine->is_inside_tree() ? String(machine->get_path()) : String(machine->get_name());
}

bool is_watched_path(const SCMachineBase *machine) {
	return is_watching() && path_of(machine).contains(shared_panel->watched);
}

String name_of(const Ref<Resource> &state) {
	return state.is_valid() ? state->get(MachineNames::shared().state_name).stringify() : String();
}

template <class... Fields>
void send(MachineRun &run, const char *message, const Fields &...fields) {
	if (!may_report(run)) {
		return;
	}
	Array sent;
	sent.push_back(path_of(run.machine()));
	(sent.push_back(fields), ...);
	EngineDebugger::get_singleton()->send_message(message, sent);
}

// By id, because a report or an order may free any machine of the list.
LocalVector<ObjectID> machines_in_tree() {
	LocalVector<ObjectID> ids;
	const Array machines = SharedMachineData::shared().machines.keys();
	for (int64_t i = 0; i < machines.size(); i++) {
		const SCMachineBase *machine = Object::cast_to<SCMachineBase>(machines[i].get_validated_object());
		if (machine != nullptr && machine->is_inside_tree()) {
			ids.push_back(ObjectID(machine->get_instance_id()));
		}
	}
	return ids;
}

SCMachineBase *machine_at(const String &path) {
	for (const ObjectID id : machines_in_tree()) {
		SCMachineBase *machine = Object::cast_to<SCMachineBase>(ObjectDB::get_instance(id));
		if (machine != nullptr && path_of(machine) == path) {
			return machine;
		}
	}
	return nullptr;
}

} // namespace

void DebuggerChannel::refresh_active() {
	MachineRun::debugger_active = EngineDebugger::get_singleton()->is_active();
}

void DebuggerChannel::state(MachineRun &run, const Ref<Resource> &now, const Ref<Resource> &previous) {
	if (!may_report(run)) {
		return;
	}
	MachineRun::Busy keep(run);
	send(run, messages::STATE, name_of(now), name_of(previous));
}

void DebuggerChannel::paused(MachineRun &run, const Ref<Resource> &state) {
	if (!may_report(run)) {
		return;
	}
	MachineRun::Busy keep(run);
	send(run, messages::PAUSED, name_of(state));
}

void DebuggerChannel::events(MachineRun &run, const StringName &name, const Variant &data, bool global) {
	if (!may_report(run)) {
		return;
	}
	MachineRun::Busy keep(run);
	send(run, messages::EVENTS, String(name), data.get_type() == Variant::NIL ? String() : data.stringify(), global);
}

void DebuggerChannel::values(MachineRun &run) {
	if (!may_report(run) || (is_watching() && !run.watched)) {
		return;
	}
	MachineRun::Busy keep(run);
	const Dictionary now = run.values_dictionary();
	const Array names = now.keys();
	TypedDictionary<String, String> told;
	for (int64_t i = 0; i < names.size(); i++) {
		told[names[i].stringify()] = now.get(names[i], Variant()).stringify();
	}
	send(run, messages::VALUES, told);
}

void DebuggerChannel::actions(MachineRun &run) {
	if (!may_report(run)) {
		return;
	}
	MachineRun::Busy keep(run);
	send(run, messages::ACTIONS, run.described_live_rows());
}

void DebuggerChannel::listen() {
	refresh_active();
	SceneTree *tree = scene_tree();
	if (!MachineRun::debugger_active || tree == nullptr || tree->get_root() == nullptr || panel().listening) {
		return;
	}
	EngineDebugger *debugger = EngineDebugger::get_singleton();
	if (debugger->has_capture(messages::CONTROL)) {
		return;
	}
	panel().listening = true;
	debugger->register_message_capture(messages::CONTROL, callable_mp_static(&DebuggerChannel::take_message));
	// The engine's debugger ends before extensions are unloaded and outlives them in part, so the
	// callable is taken back with the tree.
	tree->get_root()->connect(MachineNames::shared().tree_exiting, callable_mp_static(&DebuggerChannel::stop_listening), Object::CONNECT_ONE_SHOT);
}

void DebuggerChannel::stop_listening() {
	if (shared_panel == nullptr || !shared_panel->listening) {
		return;
	}
	shared_panel->listening = false;
	EngineDebugger *debugger = EngineDebugger::get_singleton();
	if (debugger != nullptr && debugger->has_capture(messages::CONTROL)) {
		debugger->unregister_message_capture(messages::CONTROL);
	}
}

void DebuggerChannel::mark_if_watched(MachineRun &run) {
	run.watched = run.machine() != nullptr && is_watched_path(run.machine());
}

bool DebuggerChannel::take_message(const String &message, const Array &data) {
	if (message != messages::WATCH && message != messages::PAUSE && message != messages::STEP) {
		return false;
	}
	if (data.is_empty()) {
		return true;
	}
	const String path = data[0].stringify();
	if (message == messages::WATCH) {
		watch(path);
		return true;
	}
	SCMachineBase *machine = machine_at(path);
	if (machine == nullptr) {
		return true;
	}
	if (message == messages::STEP) {
		machine->run().step_once();
	} else {
		machine->run().set_paused(data.size() < 2 || data[1].booleanize());
	}
	return true;
}

void DebuggerChannel::watch(const String &text) {
	panel().watched = text;
	for (const ObjectID id : machines_in_tree()) {
		const SCMachineBase *machine = Object::cast_to<SCMachineBase>(ObjectDB::get_instance(id));
		if (machine == nullptr) {
			continue;
		}
		MachineRun &run = machine->run();
		const bool was_watched = run.watched;
		mark_if_watched(run);
		if (run.watched && !was_watched) {
			values(run);
		}
	}
	start_reporting();
}

void DebuggerChannel::start_reporting() {
	SceneTree *tree = scene_tree();
	if (tree == nullptr || tree->get_root() == nullptr || ObjectDB::get_instance(panel().timer) != nullptr) {
		return;
	}
	Timer *timer = memnew(Timer);
	timer->set_wait_time(SECONDS_BETWEEN_REPORTS);
	timer->set_process_mode(Node::PROCESS_MODE_ALWAYS);
	// A game that stands still by its time scale is the one that somebody wants to look into.
	timer->set_ignore_time_scale(true);
	timer->set_autostart(true);
	timer->connect(MachineNames::shared().timeout, callable_mp_static(&DebuggerChannel::report_watched));
	panel().timer = ObjectID(timer->get_instance_id());
	tree->get_root()->call_deferred(MachineNames::shared().add_child, timer);
}

void DebuggerChannel::report_watched() {
	if (!is_watching() || !MachineRun::debugger_active) {
		return;
	}
	for (const ObjectID id : machines_in_tree()) {
		const SCMachineBase *machine = Object::cast_to<SCMachineBase>(ObjectDB::get_instance(id));
		if (machine != nullptr && is_watched_path(machine)) {
			actions(machine->run());
			return;
		}
	}
}

void DebuggerChannel::free_shared() {
	if (shared_panel == nullptr) {
		return;
	}
	stop_listening();
	memdelete(shared_panel);
	shared_panel = nullptr;
}
