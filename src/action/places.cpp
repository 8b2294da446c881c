#include "action/places.hpp"

#include "action/kind.hpp"
#include "action/spaces.hpp"
#include "action/values.hpp"
#include "settings/class_rows.hpp"

#include <godot_cpp/classes/canvas_item.hpp>
#include <godot_cpp/classes/canvas_layer.hpp>
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

bool is_vector2(const Variant &place) {
	return place.get_type() == Variant::VECTOR2 || place.get_type() == Variant::VECTOR2I;
}

bool is_vector3(const Variant &place) {
	return place.get_type() == Variant::VECTOR3 || place.get_type() == Variant::VECTOR3I;
}

Vector2 vector_for(const CanvasItem *, const Variant &place) {
	return as_vector2(place);
}

Vector3 vector_for(const Node3D *, const Variant &place) {
	return as_vector3(place);
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
	Variant position;
	spaces::visit(node, [&position](const auto *placed) { position = placed->is_inside_tree() ? placed->get_global_position() : placed->get_position(); });
	return position;
}

void set_position_of(Node *node, const Variant &place) {
	spaces::visit(node, [&place](auto *placed) {
		const auto position = vector_for(placed, place);
		placed->is_inside_tree() ? placed->set_global_position(position) : placed->set_position(position);
	});
}

String no_place_words(const Node *node, const String &setting) {
	if (node == nullptr) {
		values::report_null("no_place_words", "p_node");
		return String();
	}
	return vformat("%s is a %s, which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under %s", node->get_name(),
			node->get_class(), setting);
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
	if (is_vector2(place)) {
		return place;
	}
	if (is_vector3(place)) {
		const Vector3 vector = place;
		return Vector2(vector.x, vector.y);
	}
	const double number = values::as_number(place);
	return Vector2(real_t(number), real_t(number));
}

// A place in 2D keeps its two numbers: x and y stay x and y.
Vector3 as_vector3(const Variant &value) {
	const Variant place = place_of(value);
	if (is_vector3(place)) {
		return place;
	}
	if (is_vector2(place)) {
		const Vector2 vector = place;
		return Vector3(vector.x, vector.y, 0.0);
	}
	const double number = values::as_number(place);
	return Vector3(real_t(number), real_t(number), real_t(number));
}

double distance_between(const Variant &first, const Variant &second) {
	const Variant from = place_of(first);
	const Variant to = place_of(second);
	if (!(is_vector2(from) || is_vector3(from)) || !(is_vector2(to) || is_vector3(to))) {
		return Math::INF;
	}
	if (is_vector2(from) || is_vector2(to)) {
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
