#pragma once

// Hands the framework of kinds to scripts, as static methods of SCMachineAction and, the ones that a
// condition needs, of SCMachineCondition. Called while those two classes register.

namespace static_facilities {

void bind_to_action();
void bind_to_condition();
// The helpers that scripts call by name through the machine.
void add_helpers();

} // namespace static_facilities
