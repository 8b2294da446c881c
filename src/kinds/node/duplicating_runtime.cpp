// The compiled runtime of Duplicate.

#include "action/add_kind.hpp"
#include "action/add_later.hpp"
#include "action/runtime_shapes.hpp"
#include "action/spaces.hpp"
#include "action/told_path.hpp"
#include "action/weak.hpp"
#include "kinds/node/duplicating.hpp"
#include "kinds/node/own_ways.hpp"
#include "machine/native_names.hpp"
#include "machine_node/place_in_file.hpp"
#include "space/newcomers.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/window.hpp>

namespace {

constexpr int MOST_IN_A_FRAME = 100;

struct Names {
	// The meta and the script that knows of it.
	StringName carried = "quillstead_carried";
	StringName forget = "forget";
};

// Copies that all games' machines made in the present frame.
struct Made {
	uint64_t frame = 0;
	int count = 0;

	bool one_more() {
		const uint64_t now = Engine::get_singleton()->get_process_frames();
		if (frame != now) {
			frame = now;
			count = 0;
		}
		if (count >= MOST_IN_A_FRAME) {
			return false;
		}
		count++;
		return true;
	}
};
Made made_in_frame;

bool is_the_top(const Node *node) {
	if (!node->is_inside_tree() || node->get_parent() == nullptr) {
		return true;
	}
	const Node *scene = node->get_tree()->get_current_scene();
	return node == scene || (scene == nullptr && node->get_parent() == node->get_tree()->get_root());
}

class Duplicate : public OnceOrRepeating<Duplicate> {
	using Kind = SCDuplicateAction;

	// Null, and told, when it cannot be copied.
	static Node *original(SCMachineBase *machine, SCMachineAction *action) {
		const NodePath path = setting_of<&Kind::node_path>(action);
		Node *node = values::node_of(machine, path);
		if (node == nullptr) {
			verbs::warn_whole(machine, action, Kind::NO_NODE,
					vformat("Duplicate on %s: %s points at nothing, so nothing is copied. Pick the node to copy under Node.", machine->name_in_messages(),
							words::told_path(path)));
		} else if (is_the_top(node)) {
			verbs::warn_whole(machine, action, Kind::THE_TOP,
					vformat("Duplicate on %s: %s is the top of the scene, which has nothing to sit beside, so it is not copied. Copy a node inside the scene "
							"instead.",
							machine->name_in_messages(), node->get_name()));
			node = nullptr;
		}
		return node;
	}

	// In the tree a copy of a node that others place would be put back anyway.
	static void step_aside(SCMachineBase *machine, const SCMachineAction *action, Node *copy, const Node *from) {
		const Variant offset = setting_of<&Kind::offset>(action);
		if (offset.get_type() == Variant::NIL || !places::has_a_place(from) || !spaces::place_or_warn<&Kind::offset>(machine, action)) {
			return;
		}
		const Variant aside = own_ways::to_world(from, offset);
		if (Node3D *copy_3d = Object::cast_to<Node3D>(copy)) {
			const Basis parent = spaces::parent_of(Object::cast_to<Node3D>(from)).basis;
			const Vector3 moved = places::as_vector3(aside);
			copy_3d->set_position(copy_3d->get_position() + (spaces::has_a_way_back(parent) ? parent.inverse().xform(moved) : moved));
			return;
		}
		const Transform2D parent = spaces::parent_of(Object::cast_to<CanvasItem>(from));
		const Vector2 moved = places::as_vector2(aside);
		const Vector2 inside = spaces::has_a_way_back(parent) ? parent.affine_inverse().basis_xform(moved) : moved;
		if (Node2D *copy_2d = Object::cast_to<Node2D>(copy)) {
			copy_2d->set_position(copy_2d->get_position() + inside);
		} else if (Control *control = Object::cast_to<Control>(copy)) {
			control->set_position(control->get_position() + inside);
		}
	}

public:
	// The copy is made now, and joins the game with the end of the frame's calls: a Machine in it that copies itself at once has
	// its turn only then, and is counted.
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const Weak<Node> node(original(machine, action));
		if (node.get() == nullptr) {
			return;
		}
		if (!made_in_frame.one_more()) {
			verbs::warn_whole(machine, action, Kind::TOO_MANY,
					vformat("Duplicate on %s made %d copies in one frame and stopped, because a copy is copying itself as it starts. Put Duplicate in a state "
							"that is not the first one the copy runs.",
							machine->name_in_messages(), MOST_IN_A_FRAME));
			return;
		}
		const StillHere here(machine);
		const Weak<Node> parent(node.get()->get_parent());
		const Weak<Node> copy(node.get()->duplicate());
		if (copy.get() == nullptr) {
			return;
		}
		if (!here || node.get() == nullptr || parent.get() == nullptr) {
			copy.get()->queue_free();
			return;
		}
		// Nobody holds the copy of what is held.
		if (copy.get()->has_meta(NativeNames::of<Names>().carried)) {
			CompanionScripts::call(NativeNames::of<Names>().carried, NativeNames::of<Names>().forget, Array::make(copy.get()));
		}
		newcomers::note_maker(machine, copy.get());
		place_in_file::note_copied(node.get(), copy.get());
		step_aside(machine, action, copy.get(), node.get());
		if (copy.get() != nullptr && parent.get() != nullptr) {
			add_later::to(parent.get(), copy.get());
		}
		if (here && copy.get() != nullptr) {
			verbs::keep_if_named<&Kind::store_in>(machine, action, copy.get());
		}
	}
};

const AddKinds added = {
	add_kind<SCDuplicateAction, Duplicate>(),
};

} // namespace
