#include "kinds/ai/interaction_prompt.hpp"

#include "action/places.hpp"
#include "action/spaces.hpp"
#include "action/weak.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/classes/animated_sprite2d.hpp>
#include <godot_cpp/classes/collision_polygon2d.hpp>
#include <godot_cpp/classes/collision_shape2d.hpp>
#include <godot_cpp/classes/collision_shape3d.hpp>
#include <godot_cpp/classes/geometry_instance3d.hpp>
#include <godot_cpp/classes/label.hpp>
#include <godot_cpp/classes/label3d.hpp>
#include <godot_cpp/classes/polygon2d.hpp>
#include <godot_cpp/classes/shape2d.hpp>
#include <godot_cpp/classes/shape3d.hpp>
#include <godot_cpp/classes/sprite2d.hpp>
#include <godot_cpp/classes/sprite_frames.hpp>
#include <godot_cpp/classes/texture2d.hpp>

namespace interaction_prompt {

namespace {

constexpr char NAME[] = "Prompt";

constexpr int FONT_SIZE_2D = 16;
constexpr int OUTLINE_2D = 4;
constexpr int FONT_SIZE_3D = 48;
constexpr int OUTLINE_3D = 12;
// In front of what the game draws.
constexpr int IN_FRONT = 1000;

// Between the thing and the words, in metres.
constexpr double GAP = 0.125;
// For a thing that has neither a picture nor a shape.
constexpr double TALL_OTHERWISE = 1.0;

// How far something reaches above the middle of the thing: its pictures, and its shapes for one that has none.
struct Height {
	double picture = -1.0;
	double shape = -1.0;

	double above(double metre) const {
		const double seen = picture >= 0.0 ? picture : shape;
		return (seen >= 0.0 ? seen : TALL_OTHERWISE * metre) + GAP * metre;
	}
};

Rect2 around(const PackedVector2Array &points, const Vector2 &offset) {
	if (points.is_empty()) {
		return Rect2();
	}
	Rect2 bounds(points[0], Vector2());
	for (const Vector2 &point : points) {
		bounds.expand_to(point);
	}
	return Rect2(bounds.position + offset, bounds.size);
}

Rect2 picture_of(const Node *node) {
	if (const Sprite2D *sprite = Object::cast_to<Sprite2D>(node)) {
		return sprite->get_texture().is_valid() ? sprite->get_rect() : Rect2();
	}
	if (const Polygon2D *polygon = Object::cast_to<Polygon2D>(node)) {
		return around(polygon->get_polygon(), polygon->get_offset());
	}
	if (const AnimatedSprite2D *sprite = Object::cast_to<AnimatedSprite2D>(node)) {
		const Ref<SpriteFrames> frames = sprite->get_sprite_frames();
		if (frames.is_null() || !frames->has_animation(sprite->get_animation()) || sprite->get_frame() >= frames->get_frame_count(sprite->get_animation())) {
			return Rect2();
		}
		const Ref<Texture2D> texture = frames->get_frame_texture(sprite->get_animation(), sprite->get_frame());
		const Vector2 size = texture.is_valid() ? texture->get_size() : Vector2();
		return Rect2(sprite->get_offset() - (sprite->is_centered() ? size * 0.5f : Vector2()), size);
	}
	return Rect2();
}

Rect2 shape_of(const Node *node) {
	if (const CollisionShape2D *collision = Object::cast_to<CollisionShape2D>(node)) {
		return collision->get_shape().is_valid() ? collision->get_shape()->get_rect() : Rect2();
	}
	const CollisionPolygon2D *polygon = Object::cast_to<CollisionPolygon2D>(node);
	return polygon != nullptr ? around(polygon->get_polygon(), Vector2()) : Rect2();
}

void measure_2d(const Node *node, double middle, Height &height) {
	if (const Node2D *node_2d = Object::cast_to<Node2D>(node)) {
		const auto reach_up = [&](const Rect2 &rect, double &up) {
			if (rect.has_area()) {
				up = MAX(up, middle - double(node_2d->get_global_transform().xform(rect).position.y));
			}
		};
		reach_up(picture_of(node), height.picture);
		reach_up(shape_of(node), height.shape);
	}
	for (int i = 0; i < node->get_child_count(); i++) {
		measure_2d(node->get_child(i), middle, height);
	}
}

// Particles and words fill a box of their own that says nothing about how tall a thing is.
bool is_solid_to_see(const GeometryInstance3D *seen) {
	return seen->is_class("MeshInstance3D") || seen->is_class("SpriteBase3D") || seen->is_class("CSGShape3D");
}

AABB box_of(const CollisionShape3D *collision) {
	// The one thing that every shape can tell its size by.
	const Variant drawn = collision->get_shape().is_valid() ? collision->get_shape()->call("get_debug_mesh") : Variant();
	Object *mesh = drawn.get_validated_object();
	return mesh != nullptr ? AABB(mesh->call("get_aabb")) : AABB();
}

void measure_3d(const Node *node, double middle, Height &height) {
	const auto reach_up = [&](const Node3D *node_3d, const AABB &box, double &up) {
		if (box.has_surface()) {
			const AABB in_world = node_3d->get_global_transform().xform(box);
			up = MAX(up, double(in_world.position.y) + double(in_world.size.y) - middle);
		}
	};
	const GeometryInstance3D *seen = Object::cast_to<GeometryInstance3D>(node);
	if (seen != nullptr && Object::cast_to<Label3D>(node) == nullptr && is_solid_to_see(seen)) {
		reach_up(seen, seen->get_aabb(), height.picture);
	}
	if (const CollisionShape3D *collision = Object::cast_to<CollisionShape3D>(node)) {
		reach_up(collision, box_of(collision), height.shape);
	}
	for (int i = 0; i < node->get_child_count(); i++) {
		measure_3d(node->get_child(i), middle, height);
	}
}

double height_over(const Node2D *thing) {
	Height height;
	measure_2d(thing, double(thing->get_global_position().y), height);
	return height.above(places::PIXELS_PER_METRE);
}

double height_over(const Node3D *thing) {
	Height height;
	measure_3d(thing, double(thing->get_global_position().y), height);
	return height.above(1.0);
}

// Upright and of its own size, whatever the thing is turned or mirrored to.
void place(Label *label, const Node2D *thing) {
	Transform2D turned = thing->get_global_transform();
	turned.set_origin(Vector2());
	const Transform2D back = spaces::has_a_way_back(turned) ? turned.affine_inverse() : Transform2D();
	const Vector2 size = label->get_combined_minimum_size();
	const Vector2 foot(size.x * 0.5f, size.y);
	label->set_size(size);
	label->set_pivot_offset(foot);
	label->set_rotation(back.get_rotation());
	label->set_scale(back.get_scale());
	label->set_position(back.xform(Vector2(0.0f, -real_t(height_over(thing)))) - foot);
}

void place(Label3D *label, const Node3D *thing) {
	const Vector3 top = thing->get_global_position() + Vector3(0.0f, real_t(height_over(thing)), 0.0f);
	if (spaces::has_a_way_back(thing->get_global_transform().basis)) {
		label->set_global_transform(Transform3D(Basis(), top));
	}
}

Label *words_2d() {
	Label *label = memnew(Label);
	label->set_z_as_relative(false);
	label->set_z_index(IN_FRONT);
	label->add_theme_font_size_override("font_size", FONT_SIZE_2D);
	label->add_theme_color_override("font_outline_color", Color(0, 0, 0));
	label->add_theme_constant_override("outline_size", OUTLINE_2D);
	return label;
}

Label3D *words_3d() {
	Label3D *label = memnew(Label3D);
	label->set_billboard_mode(BaseMaterial3D::BILLBOARD_ENABLED);
	label->set_draw_flag(Label3D::FLAG_DISABLE_DEPTH_TEST, true);
	label->set_vertical_alignment(VERTICAL_ALIGNMENT_BOTTOM);
	label->set_font_size(FONT_SIZE_3D);
	label->set_outline_modulate(Color(0, 0, 0));
	label->set_outline_size(OUTLINE_3D);
	return label;
}

} // namespace

Node *float_over(Node *thing, const String &text) {
	const bool is_2d = Object::cast_to<Node2D>(thing) != nullptr;
	if ((!is_2d && Object::cast_to<Node3D>(thing) == nullptr) || !SCMachine::takes_children_now(thing)) {
		return nullptr;
	}
	Node *label = is_2d ? static_cast<Node *>(words_2d()) : static_cast<Node *>(words_3d());
	const Weak<Node> kept(label);
	const Weak<Node> kept_thing(thing);
	label->set_name(NAME);
	set_text(label, text);
	// A game's script may hear of it.
	thing->add_child(label, true);
	label = kept.get();
	thing = kept_thing.get();
	if (label != nullptr && thing != nullptr) {
		place_over(label, thing);
	}
	return label;
}

void set_text(Node *label, const String &text) {
	if (Label *in_2d = Object::cast_to<Label>(label)) {
		in_2d->set_text(text);
	} else if (Label3D *in_3d = Object::cast_to<Label3D>(label)) {
		in_3d->set_text(text);
	}
}

void place_over(Node *label, const Node *thing) {
	if (!label->is_inside_tree() || !thing->is_inside_tree()) {
		return;
	}
	if (Label *in_2d = Object::cast_to<Label>(label)) {
		if (const Node2D *thing_2d = Object::cast_to<Node2D>(thing)) {
			place(in_2d, thing_2d);
		}
	} else if (Label3D *in_3d = Object::cast_to<Label3D>(label)) {
		if (const Node3D *thing_3d = Object::cast_to<Node3D>(thing)) {
			place(in_3d, thing_3d);
		}
	}
}

// Out of the tree at once, so that the name is free for the next; but not from under a thing that is on its way out together with
// the one who asks.
void take_away(Node *label, Node *asked_by) {
	const Weak<Node> kept(label);
	Node *parent = label->get_parent();
	if (parent != nullptr && parent->is_inside_tree() && !parent->is_ancestor_of(asked_by) && SCMachine::takes_children_now(parent)) {
		parent->remove_child(label);
	}
	if (Node *left = kept.get()) {
		left->queue_free();
	}
}

} // namespace interaction_prompt
