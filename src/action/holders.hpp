#pragma once

// Who holds a property of an object for a while: the speed of the game, a thing's visibility, the mouse. Those that hold the same
// one form a stack, whatever order they let go in: the last that still holds has its way, and when the last is gone, what was
// there before the first comes back.
//
//	slot[names().holds] = holders::hold(Engine::get_singleton(), "time_scale", machine, 0.5);
//	holders::let_go(slot[names().holds]);
//
// A ticket counts once, so that a slot copied into the next visit of a state lets go of nothing that is not its own.

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

class SCMachineBase;

namespace holders {

// Puts nothing on: that may take time. `wanted` is what comes back when a later holder lets go. The ticket is never 0.
int64_t hold(const Object *object, const StringName &property, const SCMachineBase *machine, const Variant &wanted);
// May run a game's code.
void let_go(int64_t ticket);
// A change that is to stay is what those who hold it put back to.
void change_for_good(const Object *object, const StringName &property, const Variant &value);
// A row for each that is held: the object, the property, and what comes back in the end.
Array all_held();

} // namespace holders
