// The compiled runtime of Add Node.

#include "action/add_kind.hpp"
#include "action/add_later.hpp"
#include "action/runtime_shapes.hpp"
#include "action/spaces.hpp"
#include "action/weak.hpp"
#include "kinds/node/adding.hpp"
#include "kinds/node/node_types.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine.hpp"
#include "space/newcomers.hpp"

#include <godot_cpp/classes/class_db_singleton.hpp>

namespace {

struct AddNodeNames {
	StringName added = "added";
	StringName node = "Node";
};

class AddNode : public SCNativeAction {
	using Kind = SCAddNodeAction;

	struct Made {
		Node *node = nullptr;
		String why_not;
	};

	static Made make(const StringName &type) {
		Made made;
		ClassDBSingleton *classes = ClassDBSingleton::get_singleton();
		const bool in_engine = classes->class_exists(type);
		const Ref<Script> script = in_engine ? Ref<Script>() : node_types::script_of(type);
		const StringName native = script.is_valid() ? script->get_instance_base_type() : type;
		if (!in_engine && script.is_null()) {
			made.why_not = vformat("there is no kind of node called %s", type);
		} else if (!classes->is_parent_class(native, NativeNames::of<AddNodeNames>().node)) {
			made.why_not = vformat("a %s is no node", type);
		} else if (!classes->can_instantiate(native) || (script.is_valid() && !script->can_instantiate())) {
			made.why_not = vformat("a %s is not there to be made, only kinds made from it are", type);
		} else {
			made.node = Object::cast_to<Node>(classes->instantiate(native));
			if (made.node != nullptr && script.is_valid()) {
				made.node->set_script(script);
			}
		}
		return made;
	}

	// Before it is added, so that it is seen nowhere else first.
	static void put_at(SCMachineBase *machine, SCMachineAction *action, Node *made, const Node *parent) {
		const Node *at = verbs::node_or_warn<&Kind::at_path>(machine, action);
		if (at == nullptr) {
			return;
		}
		if (!places::has_a_place(at)) {
			verbs::warn(machine, action,
					vformat("%s, so the new node is where its parent is.",
							places::no_place_words(at, verbs::setting_in_inspector(verbs::name_of<&Kind::at_path>()))));
			return;
		}
		const Variant place = places::position_of(at);
		if (Object::cast_to<Node3D>(made) != nullptr) {
			const Node3D *above = Object::cast_to<Node3D>(parent);
			const Transform3D world = above != nullptr ? spaces::world_of(above) : Transform3D();
			if (spaces::has_a_way_back(world.basis)) {
				Object::cast_to<Node3D>(made)->set_position(world.affine_inverse().xform(places::as_vector3(place)));
			}
			return;
		}
		const CanvasItem *above = Object::cast_to<CanvasItem>(parent);
		const Transform2D world = above != nullptr ? spaces::world_of(above) : Transform2D();
		if (!spaces::has_a_way_back(world)) {
			return;
		}
		const Vector2 position = world.affine_inverse().xform(places::as_vector2(place));
		if (Node2D *node_2d = Object::cast_to<Node2D>(made)) {
			node_2d->set_position(position);
		} else if (Control *control = Object::cast_to<Control>(made)) {
			control->set_position(position);
		}
	}

	static void add(SCMachineBase *machine, SCMachineAction *action, int index) {
		const StringName type = setting_of<&Kind::type>(action).strip_edges();
		if (type.is_empty()) {
			verbs::warn(machine, action, "no kind of node is picked, so none was added. Pick one under Type.");
			return;
		}
		const Weak<Node> parent(verbs::node_or_warn<&Kind::parent_path>(machine, action));
		if (parent.get() == nullptr) {
			return;
		}
		const StillHere here(machine);
		const Made made = make(type);
		const Weak<Node> node(made.node);
		if (made.node == nullptr) {
			const String why = made.why_not.is_empty() ? vformat("a %s could not be made", type) : made.why_not;
			if (here) {
				verbs::warn(machine, action, vformat("%s, so none was added. Pick another under Type.", why));
			}
			return;
		}
		// A script's _init may have done anything.
		if (!here || parent.get() == nullptr) {
			made.node->queue_free();
			return;
		}
		const String name = words::fill_in(setting_of<&Kind::node_name>(action), machine).strip_edges().validate_node_name();
		made.node->set_name(name.is_empty() ? String(type) : name);
		if (!setting_of<&Kind::at_path>(action).is_empty()) {
			put_at(machine, action, made.node, parent.get());
		}
		const StringName group = setting_of<&Kind::group>(action);
		if (node.get() != nullptr && !group.is_empty()) {
			node.get()->add_to_group(group);
		}
		if (node.get() == nullptr || parent.get() == nullptr || !here) {
			if (node.get() != nullptr) {
				node.get()->queue_free();
			}
			return;
		}
		newcomers::note_maker(machine, node.get());
		if (setting_of<&Kind::remove_when_left>(action)) {
			machine->slot(index)[NativeNames::of<AddNodeNames>().added] = int64_t(node.get()->get_instance_id());
		}
		if (SCMachine::takes_children_now(parent.get())) {
			newcomers::add(parent.get(), node.get());
		} else {
			add_later::to(parent.get(), node.get());
		}
		if (here && node.get() != nullptr) {
			verbs::keep_if_named<&Kind::store_in>(machine, action, node.get());
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		add(machine, action, index);
		if (here) {
			machine->finish(index);
		}
	}

	void exit(SCMachineBase *machine, SCMachineAction *, int index) override {
		Dictionary slot = machine->slot(index);
		const StringName &added = NativeNames::of<AddNodeNames>().added;
		const int64_t id = slot.get(added, 0);
		slot.erase(added);
		Node *node = id != 0 ? Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(id))) : nullptr;
		if (node != nullptr) {
			node->queue_free();
		}
	}
};

const AddKinds added = {
	add_kind<SCAddNodeAction, AddNode>(),
};

} // namespace
