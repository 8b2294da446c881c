// The compiled condition about what the player holds or has pressed.

#include "action/add_kind.hpp"
#include "action/input_words.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/conditions/input.hpp"

namespace {

bool is_input_so(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCInputCondition;
	const StringName input = setting_of<&Kind::input_action>(condition);
	if (input_words::action_for(input).is_empty()) {
		verbs::warn(machine, condition,
				input.is_empty()
						? String("it has no input to ask about, so the answer is no. Pick one under Input Action.")
						: vformat("nothing is called \"%s\", so the answer is no. Pick an input under Input Action, or add it to the Input Map.", input));
		return false;
	}
	const double remembered_for = setting_of<&Kind::remembered_for>(condition);
	switch (setting_of<&Kind::when>(condition)) {
		case Kind::HELD:
			break;
		case Kind::JUST_PRESSED:
			return remembered_for > 0.0 ? input_words::pressed_within(input, remembered_for) : input_words::just_pressed(input);
		case Kind::JUST_RELEASED:
			return remembered_for > 0.0 ? input_words::released_within(input, remembered_for) : input_words::just_released(input);
	}
	return input_words::is_held(input);
}

const AddKinds added = {
	add_condition<SCInputCondition, &is_input_so>(),
};

} // namespace
