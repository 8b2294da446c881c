#include "kinds/flow/debug_drawings.hpp"

#include "action/add_later.hpp"

#include <godot_cpp/classes/canvas_item.hpp>
#include <godot_cpp/classes/canvas_layer.hpp>
#include <godot_cpp/classes/rendering_server.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/viewport.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/object.hpp>

namespace {

constexpr double LINE_WIDTH = 2.0;

// Known to the parent by id, as it is added only when the parent has time for it.
template <class Drawings>
Drawings *drawings_under(Node *parent, const char *meta) {
	if (parent == nullptr) {
		return nullptr;
	}
	const uint64_t known = parent->get_meta(meta, 0);
	Drawings *drawings = known != 0 ? Object::cast_to<Drawings>(ObjectDB::get_instance(known)) : nullptr;
	if (drawings == nullptr || drawings->is_queued_for_deletion()) {
		drawings = memnew(Drawings);
		drawings->set_name("QuillSteadDebugDrawings");
		// A drawing has its time while the game is paused too, which is when it is looked at.
		drawings->set_process_mode(Node::PROCESS_MODE_ALWAYS);
		parent->set_meta(meta, drawings->get_instance_id());
		add_later::to(parent, drawings, Node::INTERNAL_MODE_BACK);
	}
	return drawings;
}

} // namespace

SCDebugDrawings2D *SCDebugDrawings2D::beside(Node *node) {
	if (node == nullptr || !node->is_inside_tree()) {
		return nullptr;
	}
	Node *parent = node->get_viewport();
	for (Node *at = node; at != nullptr && at != parent; at = at->get_parent()) {
		if (Object::cast_to<CanvasLayer>(at) != nullptr) {
			parent = at;
			break;
		}
	}
	return drawings_under<SCDebugDrawings2D>(parent, "quillstead_debug_drawings_2d");
}

void SCDebugDrawings2D::put(int64_t number, const DebugDrawing<Points> &drawing) {
	table.put(number, drawing);
	drawings_changed();
}

void SCDebugDrawings2D::take(int64_t number) {
	if (table.take(number)) {
		drawings_changed();
	}
}

void SCDebugDrawings2D::drawings_changed() {
	if (table.is_empty()) {
		queue_free();
	} else {
		queue_redraw();
	}
}

void SCDebugDrawings2D::_notification(int what) {
	switch (what) {
		case NOTIFICATION_ENTER_TREE:
			set_z_index(int(RenderingServer::CANVAS_ITEM_Z_MAX));
			set_process(true);
			break;
		case NOTIFICATION_PROCESS:
			if (table.pass(get_process_delta_time())) {
				drawings_changed();
			}
			break;
		case NOTIFICATION_DRAW:
			for (const KeyValue<int64_t, DebugDrawing<Points>> &drawing : table.all()) {
				draw_multiline(drawing.value.ends, drawing.value.color, LINE_WIDTH);
			}
			break;
		default:
			break;
	}
}

void SCDebugDrawings2D::_bind_methods() {
	ClassDB::bind_method(D_METHOD("lines"), &SCDebugDrawings2D::lines);
}

SCDebugDrawings3D *SCDebugDrawings3D::beside(Node *node) {
	return node != nullptr && node->is_inside_tree() ? drawings_under<SCDebugDrawings3D>(node->get_viewport(), "quillstead_debug_drawings_3d") : nullptr;
}

void SCDebugDrawings3D::put(int64_t number, const DebugDrawing<Points> &drawing) {
	table.put(number, drawing);
	drawings_changed();
}

void SCDebugDrawings3D::take(int64_t number) {
	if (table.take(number)) {
		drawings_changed();
	}
}

void SCDebugDrawings3D::drawings_changed() {
	mesh_is_old = true;
	if (table.is_empty()) {
		queue_free();
	}
}

// Once a frame, however many drawings have moved in it.
void SCDebugDrawings3D::build_mesh() {
	if (mesh.is_null()) {
		mesh.instantiate();
		material.instantiate();
		material->set_shading_mode(BaseMaterial3D::SHADING_MODE_UNSHADED);
		material->set_flag(BaseMaterial3D::FLAG_ALBEDO_FROM_VERTEX_COLOR, true);
		// Seen through walls, or it would hide in what it is about.
		material->set_flag(BaseMaterial3D::FLAG_DISABLE_DEPTH_TEST, true);
		material->set_transparency(BaseMaterial3D::TRANSPARENCY_ALPHA);
		set_mesh(mesh);
		set_cast_shadows_setting(GeometryInstance3D::SHADOW_CASTING_SETTING_OFF);
	}
	mesh->clear_surfaces();
	if (table.is_empty()) {
		return;
	}
	mesh->surface_begin(Mesh::PRIMITIVE_LINES, material);
	for (const KeyValue<int64_t, DebugDrawing<Points>> &drawing : table.all()) {
		for (int64_t i = 0; i < drawing.value.ends.size(); i++) {
			mesh->surface_set_color(drawing.value.color);
			mesh->surface_add_vertex(drawing.value.ends[i]);
		}
	}
	mesh->surface_end();
}

void SCDebugDrawings3D::_notification(int what) {
	switch (what) {
		case NOTIFICATION_ENTER_TREE:
			set_process(true);
			break;
		case NOTIFICATION_PROCESS:
			if (table.pass(get_process_delta_time())) {
				drawings_changed();
			}
			if (mesh_is_old) {
				mesh_is_old = false;
				build_mesh();
			}
			break;
		default:
			break;
	}
}

void SCDebugDrawings3D::_bind_methods() {
	ClassDB::bind_method(D_METHOD("lines"), &SCDebugDrawings3D::lines);
}
