#pragma once

// What a player holds, by the word a kind names it with: a key, a mouse button, a gamepad input, a
// control of the project's input map, or any key or button at all. The addon's input script knows
// the words; kinds ask through here and never the engine.

#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>

using namespace godot;

namespace input_words {

bool is_held(const StringName &input);
bool just_pressed(const StringName &input);
bool just_released(const StringName &input);
// How far it is pressed, from 0 to 1.
double strength(const StringName &input);
// Whether a stick that it is on is out of its middle, even a little.
bool has_stick_push(const StringName &input);
// Pressed, or let go, in this frame or up to so many seconds ago.
bool pressed_within(const StringName &input, double seconds);
bool released_within(const StringName &input, double seconds);
// The control of the input map that stands for the word; empty when it means nothing.
StringName action_for(const StringName &input);

} // namespace input_words
