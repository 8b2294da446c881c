// The compiled runtime of Tween Property.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/property_paths.hpp"
#include "action/runtime_shapes.hpp"
#include "action/weak.hpp"
#include "kinds/node/tweening.hpp"

namespace {

class TweenProperty : public SCNativeAction {
	using Kind = SCTweenPropertyAction;

	static bool has_values_in_between(Variant::Type type) {
		switch (type) {
			case Variant::INT:
			case Variant::FLOAT:
			case Variant::VECTOR2:
			case Variant::VECTOR2I:
			case Variant::VECTOR3:
			case Variant::VECTOR3I:
			case Variant::VECTOR4:
			case Variant::VECTOR4I:
			case Variant::RECT2:
			case Variant::RECT2I:
			case Variant::COLOR:
			case Variant::QUATERNION:
			case Variant::BASIS:
			case Variant::TRANSFORM2D:
			case Variant::TRANSFORM3D:
				return true;
			default:
				return false;
		}
	}

	// Nil for what cannot be added up.
	static Variant sum(const Variant &from, const Variant &by) {
		Variant added;
		bool valid = false;
		Variant::evaluate(Variant::OP_ADD, from, by, added, valid);
		return valid && added.get_type() == from.get_type() ? added : Variant();
	}

	struct Plan {
		Variant end;
		String why_not;
	};

	static Plan plan(const SCMachineAction *action, Node *node, const NodePath &path, const String &property) {
		Plan made;
		const Weak<Node> held(node);
		const Variant value = setting_of<&Kind::to>(action);
		property_paths::Wanted wanted = property_paths::wanted_at(node, path);
		const Variant now = held.get() != nullptr ? held.get()->get_indexed(path) : Variant();
		node = held.get();
		if (node == nullptr) {
			made.why_not = "it is gone";
			return made;
		}
		if (!wanted.is_there) {
			made.why_not =
					wanted.empty_part.is_empty() ? vformat("a %s has no such property", node->get_class()) : vformat("its %s is empty", wanted.empty_part);
			return made;
		}
		// A property that takes anything is eased as what it holds.
		wanted.type = wanted.type == Variant::NIL ? now.get_type() : wanted.type;
		if (!has_values_in_between(wanted.type) || now.get_type() != wanted.type) {
			made.why_not = vformat("it holds %s, and there is nothing in between to pass through. Set Property sets it at once", values::kind_in_words(now));
			return made;
		}
		if (!property_paths::fit(wanted, value, node, made.end) || !checked::is_sound(made.end)) {
			made.why_not = vformat("it takes %s and was given %s", property_paths::in_words(wanted),
					checked::is_sound(value) ? values::kind_in_words(value) : String("a number that is none, or endless"));
			return made;
		}
		if (setting_of<&Kind::relative>(action)) {
			made.end = sum(now, made.end);
			if (made.end.get_type() == Variant::NIL || !checked::is_sound(made.end)) {
				made.why_not = vformat("%s cannot be changed by so much. Tick Relative off", property);
			}
		}
		return made;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		const Weak<Node> node(verbs::node_or_warn<&Kind::node_path>(machine, action));
		const String property = setting_of<&Kind::property>(action).strip_edges();
		if (node.get() == nullptr || property.is_empty()) {
			if (node.get() != nullptr) {
				verbs::warn(
						machine, action, vformat("it has no property of %s to change, so it did nothing. Type one under Property.", node.get()->get_name()));
			}
			machine->finish(index);
			return;
		}
		const Plan made = plan(action, node.get(), property_paths::path_of(property), property);
		if (!here) {
			return;
		}
		if (!made.why_not.is_empty() || node.get() == nullptr) {
			if (node.get() != nullptr) {
				verbs::warn(machine, action,
						vformat("it could not ease %s of %s, because %s, so it did nothing. Pick another under Property, or change To.", property,
								node.get()->get_name(), made.why_not));
			}
			machine->finish(index);
			return;
		}
		Easings::move_property<&Kind::curve, &Kind::easing>(
				machine, action, index, node.get(), NodePath(property), made.end, checked::number<&Kind::duration>(machine, action));
	}
};

const AddKinds added = {
	add_kind<SCTweenPropertyAction, TweenProperty>(),
};

} // namespace
