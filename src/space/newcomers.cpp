#include "space/newcomers.hpp"

#include "action/add_later.hpp"
#include "action/shared_verbs.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/classes/collision_object2d.hpp>
#include <godot_cpp/classes/collision_object3d.hpp>
#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/window.hpp>

namespace newcomers {

namespace {

struct Names {
	StringName made_by = "quillstead_made_by";
};

bool collides(Node *made) {
	return verbs::first_of<CollisionObject2D>(made) != nullptr || verbs::first_of<CollisionObject3D>(made) != nullptr;
}

} // namespace

void note_maker(SCMachineBase *machine, Node *made) {
	const Node *maker = machine->target_node();
	if (maker != nullptr) {
		// By its path: a node in a meta would be written into a scene that is saved, and be freed before it.
		made->set_meta(NativeNames::of<Names>().made_by, maker->is_inside_tree() ? maker->get_path() : NodePath(String(maker->get_name())));
	}
}

Node *scene_of(SCMachineBase *machine) {
	SceneTree *tree = machine->is_inside_tree() ? machine->get_tree() : nullptr;
	if (tree == nullptr) {
		return nullptr;
	}
	Node *scene = tree->get_current_scene();
	return scene != nullptr ? scene : tree->get_root();
}

void add(Node *parent, Node *made) {
	if (!SCMachine::takes_children_now(parent) || (Engine::get_singleton()->is_in_physics_frame() && collides(made))) {
		add_later::to(parent, made);
	} else {
		parent->add_child(made, true);
	}
}

} // namespace newcomers
