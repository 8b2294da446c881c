#include "machine/game_clock.hpp"

#include "machine/debugger_channel.hpp"
#include "machine/engine_frame.hpp"
#include "machine/names.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/window.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/callable.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

double clocks[GameClocks::COUNT] = {};

struct Attachment {
	ObjectID tree;
	Callable on_frame;
	Callable on_physics_frame;
};

Attachment *attached = nullptr;
uint64_t frames_seen = 0;

SceneTree *attached_tree() {
	return attached != nullptr ? Object::cast_to<SceneTree>(ObjectDB::get_instance(attached->tree)) : nullptr;
}

void tick(bool physics) {
	frames_seen++;
	SceneTree *tree = attached_tree();
	const Window *root = tree != nullptr ? tree->get_root() : nullptr;
	if (root == nullptr) {
		return;
	}
	if (!physics) {
		DebuggerChannel::refresh_active();
	}
	const double delta = physics ? root->get_physics_process_delta_time() : root->get_process_delta_time();
	clocks[physics ? GameClocks::PHYSICS : GameClocks::FRAME] += delta;
	if (!tree->is_paused()) {
		clocks[physics ? GameClocks::PHYSICS_UNPAUSED : GameClocks::FRAME_UNPAUSED] += delta;
	}
}

void connect_once(SceneTree *tree, const StringName &signal, const Callable &callback) {
	if (!tree->is_connected(signal, callback)) {
		tree->connect(signal, callback);
	}
}

void disconnect_if_connected(SceneTree *tree, const StringName &signal, const Callable &callback) {
	if (tree->is_connected(signal, callback)) {
		tree->disconnect(signal, callback);
	}
}

void detach() {
	if (SceneTree *tree = attached_tree()) {
		const MachineNames &names = MachineNames::shared();
		disconnect_if_connected(tree, names.process_frame, attached->on_frame);
		disconnect_if_connected(tree, names.physics_frame, attached->on_physics_frame);
	}
}

} // namespace

double GameClocks::now(int index) {
	return clocks[index];
}

uint64_t GameClocks::frame_serial() {
	// With no tree to count the frames of, the engine's own numbers, which must not be taken for ours.
	return attached != nullptr ? frames_seen : EngineFrame::now().stamp() | uint64_t(1) << 63;
}

void GameClocks::attach_to(SceneTree *tree) {
	if (tree == nullptr || Engine::get_singleton()->is_editor_hint() || attached_tree() == tree) {
		return;
	}
	detach();
	if (attached == nullptr) {
		attached = memnew(Attachment);
		attached->on_frame = callable_mp_static(&tick).bind(false);
		attached->on_physics_frame = callable_mp_static(&tick).bind(true);
	}
	attached->tree = ObjectID(tree->get_instance_id());
	const MachineNames &names = MachineNames::shared();
	connect_once(tree, names.process_frame, attached->on_frame);
	connect_once(tree, names.physics_frame, attached->on_physics_frame);
}

int GameClocks::process_mode_of(const Node *node) {
	for (; node != nullptr; node = node->get_parent()) {
		const Node::ProcessMode mode = node->get_process_mode();
		if (mode != Node::PROCESS_MODE_INHERIT) {
			return mode;
		}
	}
	return Node::PROCESS_MODE_INHERIT;
}

bool GameClocks::is_switched_off(const Node *node) {
	return !Engine::get_singleton()->is_editor_hint() && process_mode_of(node) == Node::PROCESS_MODE_DISABLED;
}

void GameClocks::free_shared() {
	if (attached == nullptr) {
		return;
	}
	detach();
	memdelete(attached);
	attached = nullptr;
}

double GameClock::idle_span() const {
	const double span = idle_since >= 0.0 ? GameClocks::now(clock) - idle_since : 0.0;
	return span > 0.0 ? span : 0.0;
}

void GameClock::end_idle() {
	seconds += idle_span();
	idle_since = -1.0;
}
