#pragma once

// One registration routine per file of natives, and the pairing of a kind with its runtime.

#include "action/kind_table.hpp"
#include "sc_native_actions.hpp"

// The word and the script path come from the kind's own declaration. A kind that has not been
// registered has none, and its runtime is left out with it.
template <class Kind, class Runtime>
void add_native() {
	if (KindOf<Kind>::row != nullptr) {
		SCNativeActions::add<Runtime>(KindOf<Kind>::row->word, KindOf<Kind>::row->script_path);
	}
}

void register_core_natives();
