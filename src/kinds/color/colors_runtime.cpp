// Compiled runtimes of the kinds that work with colours.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/color/colors.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

class GetColorComponents : public OnceOrRepeating<GetColorComponents> {
	using Kind = SCGetColorComponentsAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const Color color = setting_of<&Kind::color>(action);
		const bool any = verbs::keep_each<&Kind::store_red_in, &Kind::store_green_in, &Kind::store_blue_in, &Kind::store_alpha_in, &Kind::store_hue_in,
				&Kind::store_saturation_in, &Kind::store_brightness_in>(
				machine, action, { color.r, color.g, color.b, color.a, color.get_h(), color.get_s(), color.get_v() });
		if (!any) {
			verbs::warn(machine, action,
					"there is nowhere to put any part of the colour, so they were lost. Pick a variable under Store Red In or one of the others.");
		}
	}
};

class RandomColor : public OnceOrRepeating<RandomColor> {
	using Kind = SCRandomColorAction;

	static double between(double lowest, double highest) { return UtilityFunctions::randf_range(MIN(lowest, highest), MAX(lowest, highest)); }

	static Color in_range(const SCMachineAction *action) {
		const double from = setting_of<&Kind::lowest_hue>(action);
		const double to = setting_of<&Kind::highest_hue>(action);
		// Past the end of the rainbow it begins again.
		const double hue = UtilityFunctions::randf_range(from, to < from ? to + 1.0 : to);
		const double saturation = between(setting_of<&Kind::lowest_saturation>(action), setting_of<&Kind::highest_saturation>(action));
		const double brightness = between(setting_of<&Kind::lowest_brightness>(action), setting_of<&Kind::highest_brightness>(action));
		return Color::from_hsv(float(Math::fposmod(hue, 1.0)), float(saturation), float(brightness), float(setting_of<&Kind::alpha>(action)));
	}

	static bool from_list(SCMachineBase *machine, const SCMachineAction *action, Color &color) {
		PackedColorArray colors = setting_of<&Kind::colors>(action);
		if (colors.is_empty()) {
			verbs::warn(machine, action, "its list of colours is empty, so it picked none. Add some under Colors.");
			return false;
		}
		const StringName store_in = setting_of<&Kind::store_in>(action);
		const Variant held = store_in.is_empty() ? Variant() : machine->get_value(store_in);
		if (setting_of<&Kind::always_another>(action) && held.get_type() == Variant::COLOR) {
			PackedColorArray others;
			for (int64_t i = 0; i < colors.size(); i++) {
				if (!colors[i].is_equal_approx(held)) {
					others.push_back(colors[i]);
				}
			}
			// With nothing else to choose, the same again has to do.
			colors = others.is_empty() ? colors : others;
		}
		color = colors[UtilityFunctions::randi() % colors.size()];
		return true;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		Color color;
		switch (setting_of<&Kind::pick_from>(action)) {
			case Kind::A_RANGE:
				color = in_range(action);
				break;
			case Kind::BETWEEN_TWO:
				color = setting_of<&Kind::first>(action).lerp(setting_of<&Kind::second>(action), float(UtilityFunctions::randf()));
				break;
			case Kind::A_LIST:
				if (!from_list(machine, action, color)) {
					return;
				}
				break;
		}
		verbs::keep<&Kind::store_in>(machine, action, color, "the colour");
	}
};

class SampleGradient : public OnceOrRepeating<SampleGradient> {
	using Kind = SCSampleGradientAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const Ref<Gradient> gradient = setting_of<&Kind::gradient>(action);
		if (gradient.is_null()) {
			verbs::warn(machine, action, "it has no gradient, so it picked no colour. Make one under Gradient.");
			return;
		}
		const double left = setting_of<&Kind::at_the_left>(action);
		const double right = setting_of<&Kind::at_the_right>(action);
		if (left == right) {
			verbs::warn(machine, action,
					vformat("both ends of its gradient stand for %s, so it took the colour of the left one. Give At The Left and At The Right two different "
							"numbers.",
							words::number(left)));
		}
		const double share = left == right ? 0.0 : (setting_of<&Kind::number>(action) - left) / (right - left);
		verbs::keep<&Kind::store_in>(machine, action, gradient->sample(float(CLAMP(share, 0.0, 1.0))), "the colour");
	}
};

class SetColorComponents : public OnceOrRepeating<SetColorComponents> {
	using Kind = SCSetColorComponentsAction;

	static double part_of(const Color &color, Kind::Part part) {
		switch (part) {
			case Kind::HUE:
				return color.get_h();
			case Kind::SATURATION:
				return color.get_s();
			case Kind::BRIGHTNESS:
				return color.get_v();
			default:
				return color[int(part)];
		}
	}

	static Color with_part(Color color, Kind::Part part, double value) {
		const float share = float(CLAMP(value, 0.0, 1.0));
		const float light = float(MAX(value, 0.0));
		switch (part) {
			case Kind::HUE:
				color.set_h(float(Math::fposmod(value, 1.0)));
				break;
			case Kind::SATURATION:
				color.set_s(share);
				break;
			case Kind::BRIGHTNESS:
				color.set_v(light);
				break;
			case Kind::ALPHA:
				color.a = share;
				break;
			default:
				color[int(part)] = light;
				break;
		}
		return color;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double delta) {
		const StringName name = setting_of<&Kind::variable_name>(action);
		if (name.is_empty()) {
			verbs::warn(machine, action, "no variable is picked, so it changed nothing. Pick one under Variable Name.");
			return;
		}
		const Variant held = machine->get_value(name);
		if (held.get_type() != Variant::COLOR && !ValueKinds::is_nothing(held)) {
			verbs::warn(machine, action,
					vformat("%s holds %s, which is no colour, so it was left alone. Make it a Color under Variables, or pick another under Variable Name.",
							name, values::kind_in_words(held)));
			return;
		}
		// A variable that holds nothing yet counts as white.
		const Color color = held.get_type() == Variant::COLOR ? Color(held) : Color(1, 1, 1, 1);
		const auto part = checked::choice<&Kind::part>(machine, action, Kind::RED);
		const double value = setting_of<&Kind::value>(action);
		const double now = part_of(color, part);
		double changed = value;
		switch (setting_of<&Kind::operation>(action)) {
			case Kind::SET:
				break;
			case Kind::ADD:
				changed = now + (setting_of<&Kind::per_second>(action) && action->repeats() ? value * delta : value);
				break;
			case Kind::MULTIPLY:
				changed = now * value;
				break;
		}
		verbs::keep<&Kind::variable_name>(machine, action, with_part(color, part, changed), "it");
	}
};

const AddKinds added = {
	add_kind<SCGetColorComponentsAction, GetColorComponents>(),
	add_kind<SCRandomColorAction, RandomColor>(),
	add_kind<SCSampleGradientAction, SampleGradient>(),
	add_kind<SCSetColorComponentsAction, SetColorComponents>(),
};

} // namespace
