// Compiled conditions about a node.

#include "action/add_kind.hpp"
#include "action/comparing.hpp"
#include "action/conditions.hpp"
#include "action/property_paths.hpp"
#include "kinds/conditions/nodes.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/canvas_item.hpp>
#include <godot_cpp/classes/canvas_layer.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/classes/project_settings.hpp>
#include <godot_cpp/classes/script.hpp>
#include <godot_cpp/classes/window.hpp>

namespace {

struct Remembered {
	// The texts are made into names once in a visit, however often the condition is asked.
	StringName type_text = "type_text";
	StringName type = "type";
	StringName property_text = "property_text";
	StringName property = "property";
};

const Remembered &remembered() {
	return NativeNames::of<Remembered>();
}

// What `make` makes of the text, made anew only when the text is another than the last time.
template <class Make>
Variant made_of(const String &text, Dictionary slot, const StringName &text_key, const StringName &key, Make make) {
	if (!slot.has(text_key) || String(slot[text_key]) != text) {
		slot[text_key] = text;
		slot[key] = make();
	}
	return slot[key];
}

bool is_of_type(const Node *node, const StringName &type) {
	if (node->is_class(type)) {
		return true;
	}
	Ref<Script> script = node->get_script();
	while (script.is_valid()) {
		if (script->get_global_name() == type) {
			return true;
		}
		script = script->get_base_script();
	}
	return false;
}

bool has_under(const Node *node, const StringName &type, bool recursive) {
	for (int i = 0; i < node->get_child_count(); i++) {
		const Node *child = node->get_child(i);
		if (!child->is_queued_for_deletion() && (is_of_type(child, type) || (recursive && has_under(child, type, true)))) {
			return true;
		}
	}
	return false;
}

bool is_known_type(const StringName &type) {
	if (ClassDB::class_exists(type)) {
		return true;
	}
	const Array scripts = ProjectSettings::get_singleton()->get_global_class_list();
	for (int64_t i = 0; i < scripts.size(); i++) {
		if (StringName(Dictionary(scripts[i]).get("class", StringName())) == type) {
			return true;
		}
	}
	return false;
}

bool has_child_of_type(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCHasChildOfTypeCondition;
	const Node *node = conditions::node<&Kind::node_path>(machine, condition);
	if (node == nullptr) {
		return false;
	}
	const String text = setting_of<&Kind::type>(condition);
	const StringName type = made_of(text, machine->condition_slot(), remembered().type_text, remembered().type, [&]() -> Variant {
		const StringName named = text.strip_edges();
		if (named.is_empty()) {
			verbs::warn(machine, condition, "no kind of node is picked, so the answer is no. Pick one under Type.");
		} else if (!is_known_type(named)) {
			verbs::warn(machine, condition, vformat("there is no kind of node called %s, so the answer is no. Pick one under Type.", named));
		}
		return named;
	});
	return !type.is_empty() && has_under(node, type, setting_of<&Kind::recursive>(condition));
}

bool is_child_of(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCIsChildOfCondition;
	Node *node = conditions::node<&Kind::node_path>(machine, condition);
	const Node *parent = conditions::node<&Kind::parent_path>(machine, condition);
	if (node == nullptr || parent == nullptr) {
		return false;
	}
	if (setting_of<&Kind::node_path>(condition).is_empty() && setting_of<&Kind::parent_path>(condition).is_empty()) {
		verbs::warn(machine, condition,
				vformat("it asks whether %s is under itself, so the answer is no. Pick another node under Node Path or Parent Path.", node->get_name()));
		return false;
	}
	return setting_of<&Kind::recursive>(condition) ? parent->is_ancestor_of(node) : node->get_parent() == parent;
}

bool is_visible(SCMachineBase *machine, SCMachineCondition *condition, const Node *node) {
	if (const CanvasItem *item = Object::cast_to<CanvasItem>(node)) {
		return item->is_visible_in_tree();
	}
	if (const Node3D *node_3d = Object::cast_to<Node3D>(node)) {
		return node_3d->is_visible_in_tree();
	}
	if (const CanvasLayer *layer = Object::cast_to<CanvasLayer>(node)) {
		return layer->is_visible();
	}
	if (const Window *window = Object::cast_to<Window>(node)) {
		return window->is_visible();
	}
	verbs::warn_wrong_class(machine, condition, node, "a node that can be seen", verbs::name_of<&SCNodeCondition::node_path>());
	return false;
}

bool is_so(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCNodeCondition;
	const Kind::Test test = setting_of<&Kind::test>(condition);
	if (test == Kind::IS_THERE) {
		const Node *node = values::node_of(machine, setting_of<&Kind::node_path>(condition));
		return node != nullptr && node->is_inside_tree() && !node->is_queued_for_deletion();
	}
	const Node *node = conditions::node<&Kind::node_path>(machine, condition);
	if (node == nullptr) {
		return false;
	}
	if (test == Kind::IS_VISIBLE) {
		return is_visible(machine, condition, node);
	}
	if (test == Kind::IS_ENABLED) {
		return node->is_inside_tree() && node->can_process();
	}
	const StringName group = setting_of<&Kind::group>(condition);
	if (group.is_empty()) {
		verbs::warn(machine, condition, "no group is named, so the answer is no. Type one under Group.");
		return false;
	}
	return node->is_in_group(group);
}

// How long a vector is; any other value as it is.
Variant in_order_by(const Variant &value) {
	return values::is_vector(value) ? Variant(double(places::as_vector3(value).length())) : value;
}

bool answers(const Variant &held, comparing::Test test, const Variant &value) {
	if (test == comparing::EQUALS || test == comparing::NOT_EQUALS) {
		const bool spread = values::is_vector(held) && values::is_number(value);
		const bool is_2d = held.get_type() == Variant::VECTOR2 || held.get_type() == Variant::VECTOR2I;
		const Variant parts = is_2d ? Variant(places::as_vector2(value)) : Variant(places::as_vector3(value));
		return comparing::passes(held, test, spread ? parts : value);
	}
	return comparing::passes(in_order_by(held), test, in_order_by(value));
}

// False when there is no such property.
bool read_property(Node *node, const NodePath &path, Variant &held) {
	held = node;
	for (int64_t i = 0; i < path.get_subname_count(); i++) {
		bool found = false;
		held = held.get_named(path.get_subname(i), found);
		if (!found) {
			return false;
		}
	}
	return true;
}

bool is_such_property(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCPropertyCondition;
	Node *node = conditions::node<&Kind::node_path>(machine, condition);
	if (node == nullptr) {
		return false;
	}
	const String property = setting_of<&Kind::property>(condition);
	if (property.is_empty()) {
		verbs::warn(machine, condition, "no property is named, so the answer is no. Type one under Property.");
		return false;
	}
	const NodePath path = made_of(property, machine->condition_slot(), remembered().property_text, remembered().property,
			[&]() -> Variant { return property_paths::path_of(property); });
	const comparing::Test test = comparing::Test(setting_of<&Kind::test>(condition));
	const Variant value = setting_of<&Kind::value>(condition);
	// A script's getter may do anything, to this machine too.
	const StillHere here(machine);
	const String name = node->get_name();
	Variant held;
	const bool found = read_property(node, path, held);
	if (!found) {
		if (here) {
			verbs::warn(machine, condition, vformat("%s has no property %s, so the answer is no. Check the name under Property.", name, property));
		}
		return false;
	}
	return answers(held, test, value);
}

const AddKinds added = {
	add_condition<SCHasChildOfTypeCondition, &has_child_of_type>(),
	add_condition<SCIsChildOfCondition, &is_child_of>(),
	add_condition<SCNodeCondition, &is_so>(),
	add_condition<SCPropertyCondition, &is_such_property>(),
};

} // namespace
