// The compiled runtime of Set Property.

#include "action/add_kind.hpp"
#include "action/own_value.hpp"
#include "action/property_paths.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "kinds/node/properties.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/core/math.hpp>

namespace {

struct Names {
	StringName path_for = "path_for";
	StringName path = "path";
	StringName kind_for = "kind_for";
	StringName kind = "kind";
	StringName name = "name";
	StringName took_on = "took_on";
	StringName took_kind = "took_kind";
	StringName warned = "warned";
};

const Names &names() {
	return NativeNames::of<Names>();
}

class SetProperty : public OnceOrRepeating<SetProperty> {
	using Kind = SCSetPropertyAction;

	static NodePath path_in(Dictionary slot, const String &property) {
		if (slot.get(names().path_for, Variant()) != Variant(property)) {
			slot[names().path_for] = property;
			slot[names().path] = property_paths::path_of(property);
			slot.erase(names().kind_for);
		}
		return slot[names().path];
	}

	// Looked up once per node. What is not there now may be there the next time.
	static property_paths::Wanted wanted_in(Dictionary slot, Node *node, const NodePath &path) {
		property_paths::Wanted wanted;
		const auto id = int64_t(node->get_instance_id());
		if (slot.get(names().kind_for, 0) == Variant(id)) {
			wanted.is_there = true;
			wanted.type = Variant::Type(int64_t(slot[names().kind]));
			wanted.class_name = slot[names().name];
			return wanted;
		}
		wanted = property_paths::wanted_at(node, path);
		if (wanted.is_there) {
			slot[names().kind_for] = id;
			slot[names().kind] = int64_t(wanted.type);
			slot[names().name] = wanted.class_name;
		}
		return wanted;
	}

	// Endless is a value that some properties take; what is no number none does.
	static bool has_a_nan(const Variant &value) {
		switch (value.get_type()) {
			case Variant::FLOAT:
				return Math::is_nan(double(value));
			case Variant::VECTOR2: {
				const Vector2 vector = value;
				return Math::is_nan(vector.x) || Math::is_nan(vector.y);
			}
			case Variant::VECTOR3: {
				const Vector3 vector = value;
				return Math::is_nan(vector.x) || Math::is_nan(vector.y) || Math::is_nan(vector.z);
			}
			default:
				return false;
		}
	}

	// The engine takes any text there but none.
	static bool takes_no_name(const NodePath &path, const Variant &fitted) {
		return path.get_subname_count() == 1 && path.get_subname(0) == names().name && String(fitted).is_empty();
	}

	static String why(const Node *node, const Variant &value, const property_paths::Wanted &wanted) {
		if (wanted.is_there && has_a_nan(value)) {
			return "Value holds a number that is none, as 0 divided by 0 is";
		}
		if (wanted.type == Variant::NODE_PATH && (value.get_type() == Variant::STRING || value.get_type() == Variant::STRING_NAME)) {
			return vformat("%s is no path to a node", value);
		}
		if (wanted.is_there) {
			return vformat("it takes %s and was given %s", property_paths::in_words(wanted), values::kind_in_words(value));
		}
		return wanted.empty_part.is_empty() ? vformat("a %s has no such property", node->get_class()) : vformat("its %s is empty", wanted.empty_part);
	}

	// Told once for a property of a node and a kind of value, not on every frame.
	static void tell(SCMachineBase *machine, SCMachineAction *action, Dictionary slot, Node *node, const Variant &value, const property_paths::Wanted &wanted) {
		const Variant property = slot[names().path_for];
		const auto id = int64_t(node->get_instance_id());
		const auto kind = int64_t(value.get_type());
		if (slot.get(names().warned, Variant()) == property && slot.get(names().took_on, 0) == Variant(id) && slot.get(names().took_kind, 0) == Variant(kind)) {
			return;
		}
		slot[names().warned] = property;
		slot[names().took_on] = id;
		slot[names().took_kind] = kind;
		action->call(*WarningOf<&Kind::say_cannot>::name, machine, node, why(node, value, wanted));
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const String property = setting_of<&Kind::property>(action);
		Node *node = values::node_of(machine, setting_of<&Kind::node_path>(action));
		if (node == nullptr || property.is_empty()) {
			verbs::say<&Kind::warn_set>(action, machine, index);
			return;
		}
		const StillHere here(machine);
		const Weak<Node> held(node);
		const Dictionary slot = machine->slot(index);
		const NodePath path = path_in(slot, property);
		const property_paths::Wanted wanted = wanted_in(slot, node, path);
		// Looking may have run a game's code.
		node = held.get();
		if (!here || node == nullptr) {
			return;
		}
		const Variant value = contents::own_value<&Kind::value>(action);
		Variant fitted;
		if (wanted.is_there && !has_a_nan(value) && property_paths::fit(wanted, value, node, fitted) && !takes_no_name(path, fitted)) {
			node->set_indexed(path, fitted);
		} else {
			tell(machine, action, slot, node, value, wanted);
		}
	}
};

const AddKinds added = {
	add_kind<SCSetPropertyAction, SetProperty>(),
};

} // namespace
