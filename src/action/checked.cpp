#include "action/checked.hpp"

#include "action/shared_verbs.hpp"

#include <godot_cpp/core/math.hpp>

namespace checked {

namespace {

String choice_in_inspector(const PropertyInfo &setting, int64_t choice) {
	const PackedStringArray labels = setting.hint_string.split(",");
	return choice < labels.size() ? labels[choice].get_slice(":", 0) : String::num_int64(choice);
}

} // namespace

// Every comparison with what is no number fails.
bool is_sound(double number) {
	return Math::abs(number) <= LARGEST;
}

bool is_sound(const Variant &value) {
	switch (value.get_type()) {
		case Variant::INT:
		case Variant::FLOAT:
			return is_sound(double(value));
		case Variant::VECTOR2: {
			const Vector2 flat = value;
			return is_sound(flat.x) && is_sound(flat.y);
		}
		case Variant::VECTOR3: {
			const Vector3 deep = value;
			return is_sound(deep.x) && is_sound(deep.y) && is_sound(deep.z);
		}
		default:
			return true;
	}
}

bool sound_or_warn(SCMachineBase *machine, const Object *kind, const Variant &value, const StringName &setting) {
	if (is_sound(value)) {
		return true;
	}
	const String shown = verbs::setting_in_inspector(setting);
	verbs::warn(machine, kind,
			vformat("%s holds a number that is none, as 0 divided by 0 is, or one too large to work with, so it did nothing. Type another beside %s, or look "
					"at the variable that it reads.",
					shown, shown));
	return false;
}

double number_in_place_of(double held, SCMachineBase *machine, const Object *kind, const StringName &setting) {
	const String shown = verbs::setting_in_inspector(setting);
	const double taken = Math::is_nan(held) ? 0.0 : (held < 0.0 ? -LARGEST : LARGEST);
	const char *what = Math::is_nan(held) ? "is no number, as 0 divided by 0 is none" : "is too large to work with";
	verbs::warn(machine, kind,
			vformat("its %s %s, so it was taken as %s. Type another under %s, or look at the variable that it reads.", shown, what, words::number(taken),
					shown));
	return taken;
}

void warn_no_such_choice(int64_t held, int64_t otherwise, SCMachineBase *machine, const Object *kind, const PropertyInfo &setting) {
	const String shown = verbs::setting_in_inspector(setting.name);
	verbs::warn(machine, kind,
			vformat("its %s is %d, which is none of the choices there are, so it was taken as %s. Pick one beside %s.", shown, held,
					choice_in_inspector(setting, otherwise), shown));
}

} // namespace checked
