#include "action/places.hpp"

#include "action/kind.hpp"
#include "action/values.hpp"
#include "settings/class_rows.hpp"

#include <godot_cpp/classes/canvas_item.hpp>
#include <godot_cpp/classes/canvas_layer.hpp>
#include <godot_cpp/classes/control.hpp>
#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/core/object.hpp>

namespace places {

namespace {

Node *as_node(const Variant &value) {
	return value.get_type() == Variant::OBJECT ? Object::cast_to<Node>(value.get_validated_object()) : nullptr;
}

// A node stands for where it is.
Variant place_of(const Variant &value) {
	return value.get_type() == Variant::OBJECT ? position_of(as_node(value)) : value;
}

bool is_flat(const Variant &place) {
	return place.get_type() == Variant::VECTOR2 || place.get_type() == Variant::VECTOR2I;
}

bool is_deep(const Variant &place) {
	return place.get_type() == Variant::VECTOR3 || place.get_type() == Variant::VECTOR3I;
}

// Every setting of a kind that starts otherwise in 2D, those of its bases included.
template <class Each>
void for_each_2d(const ClassRow *kind, Each each) {
	for (const ClassRow *row = kind; row != nullptr; row = row->parent) {
		for (const SettingRow *setting : row->settings) {
			if (setting->px_in_2d || setting->in_2d.get_type() != Variant::NIL) {
				each(*setting);
			}
		}
	}
}

} // namespace

bool has_a_place(const Node *node) {
	return Object::cast_to<Node2D>(node) != nullptr || Object::cast_to<Node3D>(node) != nullptr || Object::cast_to<Control>(node) != nullptr;
}

// A node outside the tree has no global place, and asking for one is an engine error.
Variant position_of(const Node *node) {
	if (const Node3D *deep = Object::cast_to<Node3D>(node)) {
		return deep->is_inside_tree() ? deep->get_global_position() : deep->get_position();
	}
	if (const Node2D *flat = Object::cast_to<Node2D>(node)) {
		return flat->is_inside_tree() ? flat->get_global_position() : flat->get_position();
	}
	if (const Control *control = Object::cast_to<Control>(node)) {
		return control->is_inside_tree() ? control->get_global_position() : control->get_position();
	}
	return Variant();
}

void set_position_of(Node *node, const Variant &place) {
	if (Node3D *deep = Object::cast_to<Node3D>(node)) {
		deep->is_inside_tree() ? deep->set_global_position(as_vector3(place)) : deep->set_position(as_vector3(place));
	} else if (Node2D *flat = Object::cast_to<Node2D>(node)) {
		flat->is_inside_tree() ? flat->set_global_position(as_vector2(place)) : flat->set_position(as_vector2(place));
	} else if (Control *control = Object::cast_to<Control>(node)) {
		control->is_inside_tree() ? control->set_global_position(as_vector2(place)) : control->set_position(as_vector2(place));
	}
}

String no_place_words(const Node *node, const String &setting) {
	if (node == nullptr) {
		values::report_null("no_place_words", "p_node");
		return String();
	}
	return vformat("%s is a %s, which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under %s", node->get_name(), node->get_class(), setting);
}

bool is_2d(const Node *node) {
	for (const Node *at = node; at != nullptr; at = at->get_parent()) {
		if (Object::cast_to<CanvasItem>(at) != nullptr || Object::cast_to<CanvasLayer>(at) != nullptr) {
			return true;
		}
		if (Object::cast_to<Node3D>(at) != nullptr) {
			return false;
		}
	}
	return false;
}

Vector2 as_vector2(const Variant &value) {
	const Variant place = place_of(value);
	if (is_flat(place)) {
		return place;
	}
	if (is_deep(place)) {
		const Vector3 deep = place;
		return Vector2(deep.x, deep.y);
	}
	const double number = values::as_number(place);
	return Vector2(real_t(number), real_t(number));
}

// A flat place keeps its two numbers: x and y stay x and y.
Vector3 as_vector3(const Variant &value) {
	const Variant place = place_of(value);
	if (is_deep(place)) {
		return place;
	}
	if (is_flat(place)) {
		const Vector2 flat = place;
		return Vector3(flat.x, flat.y, 0.0);
	}
	const double number = values::as_number(place);
	return Vector3(real_t(number), real_t(number), real_t(number));
}

double distance_between(const Variant &first, const Variant &second) {
	const Variant from = place_of(first);
	const Variant to = place_of(second);
	if (!(is_flat(from) || is_deep(from)) || !(is_flat(to) || is_deep(to))) {
		return Math::INF;
	}
	if (is_flat(from) || is_flat(to)) {
		return as_vector2(from).distance_to(as_vector2(to));
	}
	return as_vector3(from).distance_to(as_vector3(to));
}

void suit_settings_2d(Object *object) {
	if (object == nullptr) {
		return;
	}
	const KindFields fields = KindFields::of(object);
	for_each_2d(fields.row, [object](const SettingRow &setting) {
		const StringName name = setting.info.name;
		object->set(name, setting.px_in_2d ? Variant(values::as_number(object->get(name)) * PIXELS_PER_METRE) : setting.in_2d);
	});
}

Dictionary starts_in_2d() {
	Dictionary table;
	for (const ClassRow *row : ClassRows::shared().in_order()) {
		if (row->script_path.is_empty()) {
			continue;
		}
		for_each_2d(row, [&table, row](const SettingRow &setting) {
			table[vformat("%s:%s", row->class_name, setting.info.name)] = setting.px_in_2d ? Variant("px") : setting.in_2d;
		});
	}
	return table;
}

} // namespace places
