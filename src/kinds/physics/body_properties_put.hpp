#pragma once

// Puts a property of a physics object. What the physics do not take while they tell of contacts waits for the end of the frame,
// still before they step; what follows on it waits behind it.

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

class SCMachineBase;

namespace body_properties {

void put(Object *object, const StringName &property, const Variant &value);

// The same for as long as the state runs. The ticket is for let_go().
int64_t put_for_a_while(Object *object, const StringName &property, const Variant &value, const SCMachineBase *machine);
// May run a game's code.
void let_go(int64_t ticket, const StringName &property);

} // namespace body_properties
