#pragma once

// Telling the game maker that an action is set up wrong: once for each action, machine and thing that
// is wrong. What a kind says ends with what it did instead and with what to change.

#include "action/sc_action.hpp"

namespace telling {

// `which` tells the things that can be wrong with one action apart.
void once(const SCMachineAction *action, SCMachineBase *machine, int which, const String &text);
// An event as a sentence names it: "nothing" when there is none.
String event_in_words(const StringName &event);
// A name in a summary: "(pick one)" when there is none. The drawn line fills such a gap by itself, but
// for a setting that ends in "_variable".
String picked(const StringName &name);
// A list of names in a summary.
String listed(const Array &names);

} // namespace telling
