#pragma once

// Where the answer of a kind goes: into the variable that the kind names, as the kind of value that the
// variable holds, or to the game maker as a warning when that cannot be. Called by runtimes.

#include "action/sc_action.hpp"

namespace answering {

// `what` is lost when there is no variable: "the number". `setting` is the one that names the variable,
// as the inspector shows it. False when nothing was kept. May run a game's code.
bool keep(SCMachineBase *machine, const SCMachineAction *action, const StringName &variable, const Variant &answer, const char *what, const char *setting = "Store In");
// The same where naming no variable is fine.
void keep_if_named(SCMachineBase *machine, const SCMachineAction *action, const StringName &variable, const Variant &answer, const char *setting = "Store In");
// For an answer that is not there: what a variable held of it goes, so that nobody works with a node or a
// resource that was not found. Any other value stays.
void let_go(SCMachineBase *machine, const StringName &variable);

// What a kind writes by the names of its settings, and the variable it works on.
PackedStringArray written_with(const SCMachineAction *action, const StringName &worked_on);

} // namespace answering

namespace verbs {

void store(SCMachineBase *machine, const StringName &variable, const Variant &value);
void store_and_send(SCMachineBase *machine, const StringName &variable, const Variant &value, const StringName &event, const Variant &data = Variant());

} // namespace verbs
