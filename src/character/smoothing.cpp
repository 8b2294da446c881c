#include "character/smoothing.hpp"

#include "machine/native_names.hpp"
#include "settings/setting_edits.hpp"

#include <godot_cpp/classes/camera2d.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/window.hpp>
#include <godot_cpp/variant/typed_array.hpp>

namespace smoothing {

namespace {

bool switched_on_here = false;

struct CameraNames {
	String any = "*";
	String camera_2d = "Camera2D";
};

template <class Each>
void for_each_camera(Node *above, Each each) {
	const CameraNames &names = NativeNames::of<CameraNames>();
	const TypedArray<Node> cameras = above->find_children(names.any, names.camera_2d, true, false);
	for (int64_t i = 0; i < cameras.size(); i++) {
		if (Camera2D *camera = Object::cast_to<Camera2D>(cameras[i].get_validated_object())) {
			each(camera);
		}
	}
}

// Godot 4.4 to 4.6: a camera that is already there when interpolation is switched on stops scrolling until it is enabled anew.
void wake(Camera2D *camera) {
	if (!camera->is_enabled()) {
		return;
	}
	const bool is_current = camera->is_current();
	camera->set_enabled(false);
	camera->set_enabled(true);
	if (is_current) {
		camera->make_current();
	}
}

void switch_on(SceneTree *tree) {
	Window *root = tree->get_root();
	root->set_physics_interpolation_mode(Node::PHYSICS_INTERPOLATION_MODE_OFF);
	tree->set_physics_interpolation_enabled(true);
	switched_on_here = true;
	for_each_camera(root, [](Camera2D *camera) { wake(camera); });
}

void follow_in_physics(Camera2D *camera) {
	camera->set_process_callback(Camera2D::CAMERA2D_PROCESS_PHYSICS);
}

} // namespace

void smooth(Node *node) {
	if (setting_edits::in_editor || node == nullptr || !node->is_inside_tree()) {
		return;
	}
	SceneTree *tree = node->get_tree();
	if (!tree->is_physics_interpolation_enabled()) {
		switch_on(tree);
	} else if (!switched_on_here) {
		return;
	}
	if (node->get_physics_interpolation_mode() != Node::PHYSICS_INTERPOLATION_MODE_INHERIT) {
		return;
	}
	if (Camera2D *camera = Object::cast_to<Camera2D>(node)) {
		follow_in_physics(camera);
	}
	for_each_camera(node, [](Camera2D *camera) { follow_in_physics(camera); });
	node->set_physics_interpolation_mode(Node::PHYSICS_INTERPOLATION_MODE_ON);
	node->reset_physics_interpolation();
}

bool is_switched_on_here() {
	return switched_on_here;
}

} // namespace smoothing
