// The compiled runtime of the kind that reads properties of nodes.

#include "action/add_kind.hpp"
#include "action/property_paths.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/data/properties.hpp"
#include "machine/native_names.hpp"

namespace {

struct PropertyNames {
	StringName path_for = "path_for";
	StringName path = "path";
	StringName is_there = "is_there";
};

class GetProperty : public OnceOrRepeating<GetProperty> {
	using Kind = SCGetPropertyAction;

	// Taken apart once for as long as the setting stays the same.
	static NodePath path_of(SCMachineBase *machine, int index, const String &property) {
		const PropertyNames &names = NativeNames::of<PropertyNames>();
		Dictionary slot = machine->slot(index);
		if (slot.get(names.path_for, Variant()) != Variant(property)) {
			slot[names.path_for] = property;
			slot[names.path] = property_paths::path_of(property);
			slot[names.is_there] = false;
		}
		return slot[names.path];
	}

	// Nothing read may be a property that holds nothing, or none at all. Found out once.
	static bool is_there(SCMachineBase *machine, int index, Node *node, const NodePath &path) {
		const StringName &known = NativeNames::of<PropertyNames>().is_there;
		Dictionary slot = machine->slot(index);
		if (!bool(slot.get(known, false))) {
			slot[known] = property_paths::wanted_at(node, path).is_there;
		}
		return slot[known];
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const String property = setting_of<&Kind::property>(action);
		if (property.is_empty()) {
			verbs::warn(machine, action, "no property is named, so there was nothing to read. Type one in beside Property, such as visible.");
			return;
		}
		Node *node = verbs::node_or_warn<&Kind::node_path>(machine, action);
		if (node == nullptr) {
			return;
		}
		const NodePath path = path_of(machine, index, property);
		// A property of a script may do anything when it is read, even free the node.
		const uint64_t node_id = node->get_instance_id();
		const StillHere here(machine);
		const Variant value = node->get_indexed(path);
		node = Object::cast_to<Node>(ObjectDB::get_instance(node_id));
		if (!here) {
			return;
		}
		if (value.get_type() == Variant::NIL && node != nullptr && !is_there(machine, index, node, path)) {
			verbs::warn(machine, action,
					vformat("%s has nothing called %s, so nothing was read. Check the name under Property against Godot's help for %s.", node->get_name(),
							property, node->get_class()));
		} else if (here) {
			verbs::keep<&Kind::store_in>(machine, action, value, "the value");
		}
	}
};

const AddKinds added = {
	add_kind<SCGetPropertyAction, GetProperty>(),
};

} // namespace
