#pragma once

// The kind that puts a button on the screen for each answer.

#include "action/kind_table.hpp"

#include <godot_cpp/variant/typed_array.hpp>

class SCShowChoicesAction : public SCMachineAction {
	SC_KIND(SCShowChoicesAction, SCMachineAction)

public:
	NodePath box_path;
	TypedArray<String> choices;
	TypedArray<StringName> events;
	StringName list_variable;
	StringName any_answer_event;
	StringName store_choice_in;
	StringName store_words_in;
	bool clear_the_box = true;
	String row_button;
	StringName row_button_event;

	enum Wrong {
		NO_BOX,
		NO_ANSWERS,
		NO_ARRAY,
	};

	String summary_default() override;
	PackedStringArray variables_read_default() override;
	// `held` is what the variable holds that is no Array.
	void warn_choices(SCMachineBase *machine, int64_t index, int64_t what, const Variant &held);
};
