#include "action/input_words.hpp"

#include "machine/companion_scripts.hpp"
#include "machine/native_names.hpp"

namespace input_words {

namespace {

struct Names {
	StringName script = "quillstead_input";
	StringName is_held = "is_held";
	StringName just_pressed = "just_pressed";
	StringName just_released = "just_released";
	StringName strength = "strength";
	StringName has_stick_push = "has_stick_push";
	StringName pressed_within = "pressed_within";
	StringName released_within = "released_within";
	StringName action_for = "action_for";
};

template <class... Arguments>
Variant asked(StringName Names::*method, const Arguments &...arguments) {
	const Names &names = NativeNames::of<Names>();
	const Ref<Script> script = CompanionScripts::script(names.script);
	return script.is_valid() ? script->call(names.*method, arguments...) : Variant();
}

} // namespace

bool is_held(const StringName &input) {
	return asked(&Names::is_held, input).booleanize();
}

bool just_pressed(const StringName &input) {
	return asked(&Names::just_pressed, input).booleanize();
}

bool just_released(const StringName &input) {
	return asked(&Names::just_released, input).booleanize();
}

double strength(const StringName &input) {
	return asked(&Names::strength, input);
}

bool has_stick_push(const StringName &input) {
	return asked(&Names::has_stick_push, input).booleanize();
}

bool pressed_within(const StringName &input, double seconds) {
	return asked(&Names::pressed_within, input, seconds).booleanize();
}

bool released_within(const StringName &input, double seconds) {
	return asked(&Names::released_within, input, seconds).booleanize();
}

StringName action_for(const StringName &input) {
	const Variant found = asked(&Names::action_for, input);
	return found.get_type() == Variant::STRING_NAME ? StringName(found) : StringName();
}

} // namespace input_words
