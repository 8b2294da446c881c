#include "machine/engine_frame.hpp"

#include <godot_cpp/classes/engine.hpp>

using namespace godot;

EngineFrame EngineFrame::now() {
	const Engine *engine = Engine::get_singleton();
	EngineFrame frame;
	frame.in_physics = engine->is_in_physics_frame();
	frame.number = frame.in_physics ? engine->get_physics_frames() : engine->get_process_frames();
	return frame;
}
