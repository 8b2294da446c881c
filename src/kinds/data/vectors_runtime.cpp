// Compiled runtimes of the kinds that work with directions and places.
//
// Sums are done in three parts; in 2D the third is 0 throughout.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/settings_in_use.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "kinds/data/vectors.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/utility_functions.hpp>
#include <godot_cpp/variant/vector2.hpp>
#include <godot_cpp/variant/vector3.hpp>

namespace {

// Nearer to zero than this there is nothing to divide by.
constexpr double NEAR_ZERO = 0.00001;

bool is_vector_2d(const Variant &value) {
	return value.get_type() == Variant::VECTOR2 || value.get_type() == Variant::VECTOR2I;
}

Vector3 in_three_parts(const Variant &value, bool in_2d) {
	if (!in_2d) {
		return places::as_vector3(value);
	}
	const Vector2 on_the_plane = places::as_vector2(value);
	return Vector3(on_the_plane.x, on_the_plane.y, 0);
}

Variant as_place(const Vector3 &value, bool in_2d) {
	return in_2d ? Variant(Vector2(value.x, value.y)) : Variant(value);
}

// A place, a direction or a number out of what a setting holds, where a node stands for its place.
// Nil, and the game maker told, when it is none of these.
Variant operand(SCMachineBase *machine, const SCMachineAction *action, const Variant &held, const char *setting) {
	if (values::is_vector(held) || values::is_number(held)) {
		return held;
	}
	if (const Node *node = held.get_type() == Variant::OBJECT ? Object::cast_to<Node>(held.get_validated_object()) : nullptr) {
		const Variant place = places::position_of(node);
		if (place.get_type() == Variant::NIL) {
			verbs::warn(machine, action, vformat("%s.", places::no_place_words(node, setting)));
		}
		return place;
	}
	verbs::warn(machine, action,
			vformat("%s holds %s, which is no place and no direction, so it did nothing. Pick a Vector2, a Vector3 or a node beside %s.", setting,
					values::kind_in_words(held), setting));
	return Variant();
}

// What a variable holds decides, then the node the machine works on.
bool is_2d_there(SCMachineBase *machine, const StringName &variable, const Variant &otherwise) {
	const Variant held = variable.is_empty() ? Variant() : machine->get_value(variable);
	if (values::is_vector(held)) {
		return is_vector_2d(held);
	}
	return values::is_vector(otherwise) ? is_vector_2d(otherwise) : places::is_2d(machine->target_node());
}

class GetVectorParts : public OnceOrRepeating<GetVectorParts> {
	using Kind = SCGetVectorComponentsAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const Variant held = operand(machine, action, setting_of<&Kind::vector>(action), "Vector");
		if (held.get_type() == Variant::NIL) {
			return;
		}
		const Vector3 parts = in_three_parts(held, is_vector_2d(held));
		if (!verbs::keep_each<&Kind::store_x_in, &Kind::store_y_in, &Kind::store_z_in, &Kind::store_length_in>(
					machine, action, { double(parts.x), double(parts.y), double(parts.z), double(parts.length()) })) {
			verbs::warn(machine, action,
					"there is nowhere to put any part, so they were lost. Pick a variable under Store X In, Store Y In, Store Z In or Store Length In.");
		}
	}
};

class SetVectorParts : public OnceOrRepeating<SetVectorParts> {
	using Kind = SCSetVectorComponentsAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double delta) {
		const StringName name = verbs::variable_or_warn<&Kind::variable_name>(machine, action, "it changed nothing");
		if (name.is_empty()) {
			return;
		}
		const Variant held = machine->get_value(name);
		if (!values::is_vector(held) && !ValueKinds::is_nothing(held)) {
			verbs::warn(machine, action,
					vformat("%s holds %s, which has no parts, so it was left alone. Make it a Vector2 or a Vector3 under Variables, or pick another under "
							"Variable Name.",
							name, values::kind_in_words(held)));
			return;
		}
		const bool in_2d = is_2d_there(machine, name, Variant());
		const auto part = checked::choice<&Kind::part>(machine, action, Kind::X);
		if (in_2d && part == Kind::Z) {
			verbs::warn(machine, action,
					vformat("%s is a Vector2, which has no z, so it changed nothing. Pick X or Y beside Part, or make it a Vector3 under Variables.", name));
			return;
		}
		Vector3 parts = values::is_vector(held) ? in_three_parts(held, in_2d) : Vector3();
		const double value = setting_of<&Kind::value>(action);
		const bool each_second = setting_of<&Kind::per_second>(action) && action->repeats();
		real_t &changed = parts[int(part)];
		switch (setting_of<&Kind::operation>(action)) {
			case Kind::SET:
				changed = real_t(value);
				break;
			case Kind::ADD:
				changed += real_t(each_second ? value * delta : value);
				break;
			case Kind::MULTIPLY:
				changed *= real_t(value);
				break;
		}
		verbs::keep<&Kind::variable_name>(machine, action, as_place(parts, in_2d), "it");
	}
};

class RandomVector : public OnceOrRepeating<RandomVector> {
	using Kind = SCRandomVectorAction;

	static Vector3 direction(bool on_a_plane, bool in_2d) {
		const double turn = UtilityFunctions::randf() * Math::TAU;
		if (in_2d) {
			return Vector3(real_t(Math::cos(turn)), real_t(Math::sin(turn)), 0);
		}
		// Heights of a ball's surface are all equally likely.
		const double height = on_a_plane ? 0.0 : UtilityFunctions::randf_range(-1.0, 1.0);
		const double across = Math::sqrt(MAX(0.0, 1.0 - height * height));
		return Vector3(real_t(Math::cos(turn) * across), real_t(height), real_t(Math::sin(turn) * across));
	}

	// The root spreads places evenly over the area or the space instead of crowding them in the middle.
	static double distance_within(double radius, bool on_a_plane) {
		const double share = UtilityFunctions::randf();
		return radius * Math::pow(share, on_a_plane ? 1.0 / 2.0 : 1.0 / 3.0);
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const auto what = setting_of<&Kind::what>(action);
		Variant center = Vector3();
		if (what != Kind::DIRECTION) {
			center = operand(machine, action, setting_of<&Kind::center>(action), "Center");
			if (center.get_type() == Variant::NIL) {
				return;
			}
		}
		const bool in_2d = is_2d_there(machine, setting_of<&Kind::store_in>(action), what == Kind::DIRECTION ? Variant() : center);
		const bool on_a_plane = in_2d || setting_of<&Kind::keep_level>(action);
		Vector3 answer = what == Kind::DIRECTION ? Vector3() : in_three_parts(center, in_2d);
		if (what == Kind::IN_A_BOX) {
			const Variant size = operand(machine, action, setting_of<&Kind::size>(action), "Size");
			if (size.get_type() == Variant::NIL) {
				return;
			}
			const Vector3 box = in_three_parts(size, in_2d);
			for (int axis = 0; axis < 3; axis++) {
				answer[axis] += real_t(UtilityFunctions::randf_range(-0.5, 0.5) * box[axis]);
			}
		} else {
			const double radius = what == Kind::DIRECTION ? 1.0 : MAX(0.0, setting_of<&Kind::radius>(action));
			const double away = what == Kind::IN_A_CIRCLE ? distance_within(radius, on_a_plane) : radius;
			answer += direction(on_a_plane, in_2d) * real_t(away);
		}
		verbs::keep<&Kind::store_in>(machine, action, as_place(answer, in_2d), "it");
	}
};

class VectorSum : public OnceOrRepeating<VectorSum> {
	using Kind = SCVectorAction;

	static Vector3 divided(SCMachineBase *machine, const SCMachineAction *action, const Vector3 &first, const Vector3 &second, bool in_2d) {
		Vector3 answer;
		for (int axis = 0; axis < (in_2d ? 2 : 3); axis++) {
			if (Math::abs(second[axis]) < NEAR_ZERO) {
				verbs::warn(machine, action,
						vformat("it divided %s by %s, which has a zero in it, so that part became 0. Give Second no part that is 0.",
								words::text_of(as_place(first, in_2d)), words::text_of(as_place(second, in_2d))));
			} else {
				answer[axis] = first[axis] / second[axis];
			}
		}
		return answer;
	}

	static Vector3 snapped(const Vector3 &first, const Vector3 &grid) {
		Vector3 answer = first;
		for (int axis = 0; axis < 3; axis++) {
			if (Math::abs(grid[axis]) >= NEAR_ZERO) {
				answer[axis] = Math::round(first[axis] / grid[axis]) * grid[axis];
			}
		}
		return answer;
	}

	static Vector3 turned(const Vector3 &first, double degrees, bool in_2d) {
		const Vector3 axis = in_2d ? Vector3(0, 0, 1) : Vector3(0, 1, 0);
		return first.rotated(axis, real_t(Math::deg_to_rad(degrees)));
	}

	// So that the share of the gap closed in a second does not depend on the frame rate.
	static double share_of(double amount, double factor, bool each_second) {
		return each_second ? 1.0 - Math::pow(1.0 - CLAMP(amount, 0.0, 1.0), factor) : amount;
	}

	static Variant answer_of(
			SCMachineBase *machine, const SCMachineAction *action, const Vector3 &first, const Vector3 &second, bool in_2d, double factor, bool each_second) {
		const double amount = setting_of<&Kind::amount>(action);
		Vector3 answer = first;
		switch (setting_of<&Kind::operation>(action)) {
			case Kind::ADD:
				answer = first + second * real_t(factor);
				break;
			case Kind::SUBTRACT:
				answer = first - second * real_t(factor);
				break;
			case Kind::MULTIPLY:
				answer = first * second;
				break;
			case Kind::DIVIDE:
				answer = divided(machine, action, first, second, in_2d);
				break;
			case Kind::SCALE:
				answer = first * real_t(amount);
				break;
			case Kind::LENGTH:
				return double(first.length());
			case Kind::DISTANCE:
				return double(first.distance_to(second));
			case Kind::DIRECTION_TO:
				answer = (second - first).normalized();
				break;
			case Kind::NORMALIZE:
				answer = first.normalized();
				break;
			case Kind::SET_LENGTH:
				answer = first.normalized() * real_t(amount);
				break;
			case Kind::LIMIT_LENGTH:
				answer = first.limit_length(real_t(MAX(0.0, amount)));
				break;
			case Kind::LERP:
				answer = first.lerp(second, real_t(share_of(amount, factor, each_second)));
				break;
			case Kind::MOVE_TOWARD:
				answer = first.move_toward(second, real_t(Math::abs(amount) * factor));
				break;
			case Kind::TURN:
				answer = turned(first, amount * factor, in_2d);
				break;
			case Kind::ANGLE_BETWEEN:
				return Math::rad_to_deg(double(first.angle_to(second)));
			case Kind::DOT:
				return double(first.dot(second));
			case Kind::CROSS: {
				const Vector3 cross = first.cross(second);
				if (in_2d) {
					return double(cross.z);
				}
				answer = cross;
				break;
			}
			case Kind::BOUNCE:
				answer = first.bounce(second.normalized());
				break;
			case Kind::SLIDE:
				answer = first.slide(second.normalized());
				break;
			case Kind::SNAP:
				answer = snapped(first, second);
				break;
		}
		return as_place(answer, in_2d);
	}

	// A wall that faces nowhere throws nothing back.
	static bool has_a_wall(SCMachineBase *machine, const SCMachineAction *action, const Vector3 &second) {
		const auto operation = setting_of<&Kind::operation>(action);
		const bool meets_one = operation == Kind::BOUNCE || operation == Kind::SLIDE;
		if (!meets_one || (second.length() >= NEAR_ZERO && second.normalized().is_normalized())) {
			return true;
		}
		if (!checked::is_sound(second)) {
			verbs::warn(machine, action,
					"Second holds a number that is none or too large to work with, so there is no wall to meet and First was kept as it is. Put the way the "
					"wall faces beside Second, such as the normal of a collision.");
			return false;
		}
		verbs::warn(machine, action,
				"Second is zero, so there is no wall to meet and First was kept as it is. Put the way the wall faces beside Second, such as the normal of a "
				"collision.");
		return false;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double delta) {
		const bool each_second = setting_of<&Kind::per_second>(action) && action->repeats() && verbs::applies<&Kind::per_second>(action);
		if (each_second && delta <= 0.0) {
			// The state has only just been entered: no time has passed.
			return;
		}
		const Variant first = operand(machine, action, setting_of<&Kind::first>(action), "First");
		const Variant second = verbs::applies<&Kind::second>(action) ? operand(machine, action, setting_of<&Kind::second>(action), "Second") : first;
		if (first.get_type() == Variant::NIL || second.get_type() == Variant::NIL) {
			return;
		}
		const bool has_side = values::is_vector(first) || values::is_vector(second);
		const bool in_2d = has_side ? is_vector_2d(first) || is_vector_2d(second) : is_2d_there(machine, setting_of<&Kind::store_in>(action), Variant());
		const Vector3 a = in_three_parts(first, in_2d);
		const Vector3 b = in_three_parts(second, in_2d);
		const Variant answer =
				has_a_wall(machine, action, b) ? answer_of(machine, action, a, b, in_2d, each_second ? delta : 1.0, each_second) : as_place(a, in_2d);
		verbs::keep<&Kind::store_in>(machine, action, answer, "the answer");
	}
};

const AddKinds added = {
	add_kind<SCGetVectorComponentsAction, GetVectorParts>(),
	add_kind<SCRandomVectorAction, RandomVector>(),
	add_kind<SCSetVectorComponentsAction, SetVectorParts>(),
	add_kind<SCVectorAction, VectorSum>(),
};

} // namespace
