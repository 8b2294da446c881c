// The compiled runtime of Show Item.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "inventory/items.hpp"
#include "kinds/items/showing.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/button.hpp>
#include <godot_cpp/classes/label.hpp>
#include <godot_cpp/classes/label3d.hpp>
#include <godot_cpp/classes/rich_text_label.hpp>
#include <godot_cpp/classes/sprite2d.hpp>
#include <godot_cpp/classes/sprite3d.hpp>
#include <godot_cpp/classes/texture2d.hpp>
#include <godot_cpp/classes/texture_rect.hpp>

namespace {

using Kind = SCShowItemAction;

struct Names {
	StringName icon = "icon";
	StringName line = "line";
	StringName price = "price";
	StringName charge = "charge";
	StringName active = "active";
	StringName text = "text";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// Why there is nothing to show it on.
String why_not(const Node *node, const NodePath &path, const char *setting) {
	if (node == nullptr) {
		return vformat("the node named in %s, %s, was not found", setting, words::name_in_line(path));
	}
	return vformat("%s is a %s", node->get_name(), node->get_class());
}

bool put_picture(Node *node, const Ref<Texture2D> &picture) {
	if (Sprite2D *sprite_2d = Object::cast_to<Sprite2D>(node)) {
		sprite_2d->set_texture(picture);
	} else if (Sprite3D *sprite_3d = Object::cast_to<Sprite3D>(node)) {
		sprite_3d->set_texture(picture);
	} else if (TextureRect *box = Object::cast_to<TextureRect>(node)) {
		box->set_texture(picture);
	} else {
		return false;
	}
	return true;
}

bool put_text(Node *node, const String &text) {
	const bool takes_text = Object::cast_to<Label>(node) != nullptr || Object::cast_to<RichTextLabel>(node) != nullptr ||
			Object::cast_to<Label3D>(node) != nullptr || Object::cast_to<Button>(node) != nullptr;
	if (takes_text) {
		node->set(names().text, text);
	}
	return takes_text;
}

class ShowItem : public OnceOrRepeating<ShowItem> {
	static void show_text(SCMachineBase *machine, SCMachineAction *action, int index, const NodePath &path, const String &text, Kind::Wrong wrong) {
		if (path.is_empty()) {
			return;
		}
		Node *node = values::node_of(machine, path);
		if (!put_text(node, text)) {
			verbs::say<&Kind::warn>(action, machine, index, int64_t(wrong), why_not(node, path, wrong == Kind::NO_NAME ? "Name" : "Line"));
		}
	}

	static double price_of(SCMachineBase *machine, const SCMachineAction *action, const Ref<Resource> &item, const String &name) {
		const double price = values::as_number(items::ask(item, names().price));
		if (checked::is_sound(price) || setting_of<&Kind::store_price_in>(action).is_empty()) {
			return price;
		}
		verbs::warn(machine, action, vformat("the price of %s is %s, so 0 is kept. Give the item a Price.", name, words::number(price)));
		return 0.0;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StillHere here(machine);
		const NodePath picture_path = setting_of<&Kind::picture_path>(action);
		const NodePath name_path = setting_of<&Kind::name_path>(action);
		const NodePath line_path = setting_of<&Kind::line_path>(action);
		const Ref<Resource> item = items::meant<&Kind::item, &Kind::item_variable>(machine, action).item;
		const Ref<Texture2D> picture = Object::cast_to<Texture2D>(items::ask(item, names().icon).get_validated_object());
		const String name = item.is_valid() ? items::shown_name(item) : String();
		const String line = item.is_valid() ? String(items::ask(item, names().line)) : String();
		if (here && !picture_path.is_empty()) {
			Node *node = values::node_of(machine, picture_path);
			if (!put_picture(node, picture)) {
				verbs::say<&Kind::warn>(action, machine, index, int64_t(Kind::NO_PICTURE), why_not(node, picture_path, "Texture"));
			}
		}
		if (here) {
			show_text(machine, action, index, name_path, name, Kind::NO_NAME);
		}
		if (here) {
			show_text(machine, action, index, line_path, line, Kind::NO_LINE);
		}
		if (here) {
			verbs::keep_each<&Kind::store_price_in, &Kind::store_charge_in, &Kind::store_active_in>(machine, action,
					{ price_of(machine, action, item, name), int64_t(values::as_number(items::ask(item, names().charge))),
							values::as_truth(items::ask(item, names().active)) });
		}
	}
};

const AddKinds added = {
	add_kind<SCShowItemAction, ShowItem>(),
};

} // namespace
