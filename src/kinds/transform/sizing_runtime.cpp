// Compiled runtimes of the kinds that give a thing another size, or shake it for a moment.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "action/spaces.hpp"
#include "action/values.hpp"
#include "kinds/transform/sizing.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/method_tweener.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

struct SizingNames {
	StringName node = "node";
	StringName property = "property";
	StringName rest = "rest";
	StringName kick = "kick";
	StringName offset = "offset";
	StringName wobbles = "wobbles";
	StringName position = "position";
	StringName rotation = "rotation";
	StringName scale = "scale";
};

const SizingNames &names() {
	return NativeNames::of<SizingNames>();
}

// A size may be one number for every direction.
template <auto Field>
bool size_or_warn(SCMachineBase *machine, const SCMachineAction *action) {
	const Variant size = setting_of<Field>(action);
	return values::is_number(size) ? checked::sound_or_warn(machine, action, size, verbs::name_of<Field>()) : spaces::place_or_warn<Field>(machine, action);
}

// As small as nothing to look at; the engine cannot work with a size of zero in 3D.
constexpr real_t SMALLEST = 0.00001f;

Vector2 not_zero(const Vector2 &size) {
	return size;
}

Vector3 not_zero(Vector3 size) {
	for (int axis = 0; axis < 3; axis++) {
		if (Math::abs(size[axis]) < SMALLEST) {
			size[axis] = SMALLEST;
		}
	}
	return size;
}

class ScaleTo : public MovesAProperty<ScaleTo> {
	using Kind = SCScaleToAction;

	static Variant size_for(const Node *placed, const Variant &to, bool times) {
		Variant now;
		spaces::visit(placed, [&now](const auto *node) { now = node->get_scale(); });
		return spaces::with_vectors(placed, now, to, [times](auto from, auto size) { return not_zero(times ? from * size : size); });
	}

public:
	static PropertyMove plan(SCMachineBase *machine, SCMachineAction *action, int) {
		Node *placed = spaces::placed_or_warn<&Kind::node_path>(machine, action);
		if (placed == nullptr || !size_or_warn<&Kind::to>(machine, action)) {
			return {};
		}
		const Variant size = size_for(placed, setting_of<&Kind::to>(action), setting_of<&Kind::measure>(action) == Kind::TIMES_ITS_SIZE);
		if (!checked::is_sound(size)) {
			verbs::warn(machine, action,
					vformat("%s would become too large to work with, so its size was left alone. Type less beside To, or pick A Size beside Measure.",
							placed->get_name()));
			return {};
		}
		return { placed, "scale", size, checked::number<&Kind::duration>(machine, action), Easings::of<&Kind::curve, &Kind::easing>(machine, action) };
	}
};

// What it adds to the node lies in the slot, so that it goes together with anything else that moves the
// node meanwhile, and can be taken off again to the last bit.
class Punch : public SCNativeAction {
	using Kind = SCPunchAction;

	static Variant combine(Variant::Operator how, const Variant &left, const Variant &right) {
		Variant answer;
		bool valid = false;
		Variant::evaluate(how, left, right, answer, valid);
		return valid ? answer : left;
	}

	static bool about_the_same(const Variant &left, const Variant &right) {
		if (values::is_number(left)) {
			return Math::is_equal_approx(double(left), double(right));
		}
		return places::as_vector3(left).is_equal_approx(places::as_vector3(right));
	}

	static Object *node_in(const Dictionary &memory) { return ObjectDB::get_instance(ObjectID(uint64_t(memory[names().node]))); }

	static void add(Dictionary memory, const Variant &offset) {
		Object *node = node_in(memory);
		if (node == nullptr) {
			return;
		}
		const StringName property = memory[names().property];
		const Variant without = combine(Variant::OP_SUBTRACT, node->get(property), memory[names().offset]);
		const Variant wanted = combine(Variant::OP_ADD, without, offset);
		const bool may_be_zero = wanted.get_type() != Variant::VECTOR3 || property != names().scale;
		const Variant now = may_be_zero ? wanted : Variant(not_zero(Vector3(wanted)));
		// What was really added is what has to come off again.
		memory[names().offset] = now == wanted ? offset : combine(Variant::OP_SUBTRACT, now, without);
		node->set(property, now);
	}

	// Where it was, and not a rounding away from there, unless something else has moved it meanwhile.
	static void settle(Dictionary memory) {
		if (!memory.has(names().offset)) {
			return;
		}
		add(memory, combine(Variant::OP_MULTIPLY, memory[names().kick], 0.0));
		memory.erase(names().offset);
		Object *node = node_in(memory);
		const StringName property = memory[names().property];
		if (node != nullptr && about_the_same(node->get(property), memory[names().rest])) {
			node->set(property, memory[names().rest]);
		}
	}

	// Swings there and back, each time less far, from and to where it was.
	static void swing(double share, const Dictionary &memory) {
		if (!memory.has(names().offset)) {
			return;
		}
		if (share >= 1.0) {
			settle(memory);
			return;
		}
		const double left = 1.0 - share;
		const double swing = Math::sin(share * Math::TAU * double(memory[names().wobbles])) * left * left;
		add(memory, combine(Variant::OP_MULTIPLY, memory[names().kick], swing));
	}

	static Variant kick_of(const SCMachineAction *action, const Node *placed) {
		const Variant amount = setting_of<&Kind::amount>(action);
		if (setting_of<&Kind::what>(action) != Kind::ROTATION) {
			return spaces::on_side_of(placed, amount);
		}
		if (places::is_2d(placed)) {
			return Math::deg_to_rad(double(places::as_vector2(amount).x));
		}
		return places::as_vector3(amount) * real_t(Math::deg_to_rad(1.0));
	}

	static const StringName &property_of(const SCMachineAction *action) {
		switch (setting_of<&Kind::what>(action)) {
			case Kind::POSITION:
				return names().position;
			case Kind::ROTATION:
				return names().rotation;
			case Kind::SCALE:
				break;
		}
		return names().scale;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		Node *placed = spaces::placed_or_warn<&Kind::node_path>(machine, action);
		const double duration = checked::number<&Kind::duration>(machine, action);
		if (placed == nullptr || !size_or_warn<&Kind::amount>(machine, action) || duration <= 0.0 || !machine->is_inside_tree()) {
			machine->finish(index);
			return;
		}
		const Variant kick = kick_of(action, placed);
		Dictionary memory = machine->slot(index);
		memory[names().node] = placed->get_instance_id();
		memory[names().property] = property_of(action);
		memory[names().rest] = placed->get(property_of(action));
		memory[names().kick] = kick;
		memory[names().offset] = combine(Variant::OP_MULTIPLY, kick, 0.0);
		memory[names().wobbles] = MAX(setting_of<&Kind::wobbles>(action), int64_t(1));
		const Ref<Tween> tween = machine->create_tween();
		tween->tween_method(callable_mp_static(&Punch::swing).bind(memory), 0.0, 1.0, duration);
		if (setting_of<&Kind::wait_for_end>(action)) {
			machine->finish_with_tween(index, tween);
		} else {
			machine->keep_tween(index, tween);
			machine->finish(index);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override { settle(machine->slot(index)); }
};

const AddKinds added = {
	add_kind<SCPunchAction, Punch>(),
	add_kind<SCScaleToAction, ScaleTo>(),
};

} // namespace
