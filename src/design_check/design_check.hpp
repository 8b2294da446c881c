#pragma once

// Looks through a design for what cannot work, or is likely not meant: names that lead nowhere, empty rows, states that nothing
// reaches. Asked by the machine as it starts, by the scene tree for its warning sign, and by scripts. Only in debug builds; a
// released game is not looked through.

#include "design_check/checked_design.hpp"

class SCMachine;

namespace design_check {

// Of a template or of a machine, which is looked through by its template if it has one. Worst first.
LocalVector<DesignFinding> findings_in(Object *design);

// One rule each, on a design that has been read.
void check_starts(CheckedDesign &design);
void check_state_names(CheckedDesign &design);
void check_ways_in(CheckedDesign &design);
void check_transitions(CheckedDesign &design);
void check_ways_out(CheckedDesign &design);
void check_regions(CheckedDesign &design);
void check_events(CheckedDesign &design);
void check_variables(CheckedDesign &design);
void check_limits(CheckedDesign &design);
void check_globals(CheckedDesign &design, const Object *of);
void check_machine(CheckedDesign &design, SCMachine &machine);

// Binds what scripts ask, and offers itself to the machines.
void register_check();
void free_shared();
#ifdef DEBUG_ENABLED
void offer_to_machines();
void forget_what_was_told();
#endif

} // namespace design_check
