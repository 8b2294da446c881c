// Compiled runtimes that read what the player holds.

#include "action/add_kind.hpp"
#include "action/input_words.hpp"
#include "action/own_value.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/input/inputs.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/input.hpp>

namespace {

struct Names {
	StringName held = "held";
	StringName sent_hold = "sent_hold";
	StringName last_tap = "last_tap";
	StringName clock = "clock";
	StringName let_go = "let_go";
};

const Names &names() {
	return NativeNames::of<Names>();
}

double number_in(const Dictionary &slot, const StringName &key, double otherwise) {
	const Variant held = slot.get(key, otherwise);
	return values::as_number(held);
}

bool truth_in(const Dictionary &slot, const StringName &key) {
	return slot.get(key, false).booleanize();
}

class EventOnInput : public SCNativeAction {
	using Kind = SCEventOnInputAction;

	// One press has one taker: a state that it led to does not take it again.
	static bool takes_press(SCMachineBase *machine, const StringName &key) {
		if (machine->press_already_used(key)) {
			return false;
		}
		machine->use_press(key);
		return true;
	}

	// A stick trembles at the point where it counts as pressed, so it has to be let go in between.
	static bool tapped_twice(Dictionary slot, const StringName &control, bool just_pressed, double clock, double seconds) {
		if (!input_words::has_stick_push(control)) {
			slot[names().let_go] = true;
		}
		if (!just_pressed || !truth_in(slot, names().let_go)) {
			return false;
		}
		slot[names().let_go] = false;
		const double last_tap = number_in(slot, names().last_tap, -1.0);
		if (last_tap < 0.0 || clock - last_tap > seconds) {
			slot[names().last_tap] = clock;
			return false;
		}
		slot[names().last_tap] = -1.0;
		return input_words::strength(control) > 0.0;
	}

	static bool held_long_enough(Dictionary slot, bool just_pressed, bool is_held, double held, double seconds) {
		if (just_pressed || !is_held || held < seconds || truth_in(slot, names().sent_hold)) {
			return false;
		}
		slot[names().sent_hold] = true;
		return true;
	}

	// Read before anything that may run a game's code, which may let another machine put its own values
	// into the settings.
	struct Settings {
		StringName control;
		Kind::When when;
		double seconds;
		bool only_while_inside;
		StringName event;
		Variant data;

		explicit Settings(const SCMachineAction *action) :
				control(setting_of<&Kind::input_action>(action)), when(setting_of<&Kind::when>(action)), seconds(setting_of<&Kind::seconds>(action)),
				only_while_inside(!setting_of<&Kind::only_while_inside>(action).is_empty()), event(setting_of<&Kind::event_name>(action)),
				data(contents::own_value<&Kind::data>(action)) {}
	};

	static bool fires(SCMachineBase *machine, const Settings &settings, const Dictionary &slot, bool just_pressed, bool is_held, double held) {
		const StringName &control = settings.control;
		switch (settings.when) {
			case Kind::JUST_PRESSED:
				return just_pressed && takes_press(machine, control);
			case Kind::JUST_RELEASED:
				return input_words::just_released(control) && takes_press(machine, StringName("released " + String(control)));
			case Kind::PRESSED:
				return is_held;
			case Kind::DOUBLE_TAPPED:
				return tapped_twice(slot, control, just_pressed, number_in(slot, names().clock, 0.0), settings.seconds);
			case Kind::HELD_FOR:
				return held_long_enough(slot, just_pressed, is_held, held, settings.seconds);
		}
		return false;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Dictionary slot = machine->slot(index);
		for (const StringName &key : { names().held, names().sent_hold, names().last_tap, names().let_go }) {
			slot.erase(key);
		}
		slot[names().clock] = 0.0;
		const bool has_something_to_do = !setting_of<&Kind::event_name>(action).is_empty() || !setting_of<&Kind::store_held_seconds_in>(action).is_empty();
		if (input_words::action_for(setting_of<&Kind::input_action>(action)).is_empty() || !has_something_to_do) {
			verbs::say<&Kind::warn_input>(action, machine, index);
		}
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const StillHere here(machine);
		// By its run mode it has done its work, and goes on listening all the same.
		if (action->run_mode != SCMachineAction::EVERY_FRAME && !machine->is_finished(index)) {
			machine->finish(index);
		}
		Dictionary slot = machine->slot(index);
		slot[names().clock] = number_in(slot, names().clock, 0.0) + delta;
		const Settings settings(action);
		const bool is_held = input_words::is_held(settings.control);
		const bool just_pressed = input_words::just_pressed(settings.control);
		double held = number_in(slot, names().held, 0.0);
		if (just_pressed) {
			held = 0.0;
			slot[names().sent_hold] = false;
		} else if (is_held) {
			held += delta;
		}
		slot[names().held] = held;
		if (is_held || just_pressed) {
			verbs::keep_if_named<&Kind::store_held_seconds_in>(machine, action, held);
		}
		if (!here || !fires(machine, settings, slot, just_pressed, is_held, held)) {
			return;
		}
		if (settings.only_while_inside && !verbs::say<&Kind::inside_check>(action, machine, index).booleanize()) {
			return;
		}
		if (here) {
			verbs::send(machine, settings.event, settings.data);
		}
	}
};

class InputAxis : public OnceOrRepeating<InputAxis> {
	using Kind = SCGetInputVectorAction;

	static Vector2 direction_held(const StringName &left, const StringName &right, const StringName &up, const StringName &down) {
		const StringName actions[] = { input_words::action_for(left), input_words::action_for(right), input_words::action_for(up),
			input_words::action_for(down) };
		if (!actions[0].is_empty() && !actions[1].is_empty() && !actions[2].is_empty() && !actions[3].is_empty()) {
			return Input::get_singleton()->get_vector(actions[0], actions[1], actions[2], actions[3]);
		}
		const Vector2 pushed(
				real_t(input_words::strength(right) - input_words::strength(left)), real_t(input_words::strength(down) - input_words::strength(up)));
		return pushed.limit_length(1.0);
	}

	// On the ground of a 3D world, up on a stick is away.
	static Variant fitted(SCMachineBase *machine, const StringName &variable, const Vector2 &direction) {
		if (machine->get_value(variable).get_type() == Variant::VECTOR3) {
			return Vector3(direction.x, 0.0, direction.y);
		}
		return direction;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		if (setting_of<&Kind::store_in>(action).is_empty() && setting_of<&Kind::store_strength_in>(action).is_empty()) {
			verbs::say<&Kind::warn_nowhere_to_store>(action, machine, index);
		}
		const StringName inputs[] = { setting_of<&Kind::left_action>(action), setting_of<&Kind::right_action>(action), setting_of<&Kind::up_action>(action),
			setting_of<&Kind::down_action>(action) };
		for (const StringName &input : inputs) {
			if (here && input_words::action_for(input).is_empty()) {
				verbs::say<&Kind::warn_no_directions>(action, machine, index);
				break;
			}
		}
		if (here) {
			OnceOrRepeating<InputAxis>::enter(machine, action, index);
		}
	}

	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StillHere here(machine);
		const StringName store_in = setting_of<&Kind::store_in>(action);
		const bool keeps_last = setting_of<&Kind::keep_last_direction>(action);
		const Vector2 direction = direction_held(setting_of<&Kind::left_action>(action), setting_of<&Kind::right_action>(action),
				setting_of<&Kind::up_action>(action), setting_of<&Kind::down_action>(action));
		if (!store_in.is_empty() && !(keeps_last && direction.is_zero_approx())) {
			machine->set_value(store_in, fitted(machine, store_in, direction));
		}
		if (here) {
			verbs::keep_if_named<&Kind::store_strength_in>(machine, action, double(direction.length()));
		}
	}
};

const AddKinds added = {
	add_kind<SCEventOnInputAction, EventOnInput>(),
	add_kind<SCGetInputVectorAction, InputAxis>(),
};

} // namespace
