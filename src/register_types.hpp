#pragma once

// The library's entry and exit: what registers, in which order, and what is freed at the end.

#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/godot.hpp>

void initialize_quillstead(godot::ModuleInitializationLevel level);
void terminate_quillstead(godot::ModuleInitializationLevel level);
