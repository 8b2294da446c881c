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

// The compiled half of a question.
template <class Kind>
void add_question(NativeQuestion question) {
	if (KindOf<Kind>::row != nullptr) {
		SCNativeActions::add_question(KindOf<Kind>::row->script_path, question);
	}
}

void register_core_natives();
void register_check_natives();
void register_input_natives();
void register_math_natives();
void register_property_natives();
void register_signal_natives();
void register_visible_natives();
void register_flow_natives();
void register_loop_natives();
void register_machine_natives();
void register_run_template_natives();
void register_switching_natives();
void register_testing_natives();
void register_questions_about_machines();
void register_questions_about_nodes();
void register_questions_about_playing();
void register_questions_about_space();
void register_questions_about_text();
void register_questions_about_touching();
void register_data_list_natives();
void register_data_table_natives();
void register_easing_natives();
void register_get_property_natives();
void register_number_natives();
void register_text_natives();
void register_vector_natives();
void register_color_natives();
void register_time_natives();
void register_transform_moving_natives();
void register_transform_paths_natives();
void register_transform_sizing_natives();
void register_transform_turning_natives();
