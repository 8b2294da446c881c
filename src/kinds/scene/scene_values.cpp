#include "kinds/scene/scene_values.hpp"

#include "action/sc_native_actions.hpp"
#include "kinds/scene/saved_values.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/resource_loader.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/window.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

#include <cmath>
#include <limits>

namespace scene_values {

namespace {

// How deep lists may lie within lists.
constexpr int DEEPEST = 64;
// Ids of objects are far above what is counted.
constexpr int64_t LEAST_ID = 1 << 24;
// Above it a float has no places behind the point.
constexpr double LARGEST_WHOLE = 1e15;

struct Names {
	String node = "node";
	String id = "id";
	String resource = "resource";
	String list = "list";
	// A table by what its keys are: all texts, all names, or anything.
	String texts = "texts";
	String names = "names";
	String pairs = "pairs";
	String typed = "typed";
	String native = "native";
	StringName made_by = "quillstead_made_by";
	StringName game_files = "quillstead_game_files";
	StringName has = "has";
};

const Names &names() {
	return NativeNames::of<Names>();
}

bool is_of_the_game(const Variant &path) {
	return CompanionScripts::call(names().game_files, names().has, Array::make(path)).booleanize();
}

String exact(double number) {
	if (number == Math::floor(number) && Math::abs(number) < LARGEST_WHOLE) {
		return String::num_int64(int64_t(number)) + (number == 0.0 && std::signbit(number) ? "" : ".0");
	}
	const String words = UtilityFunctions::var_to_str(number);
	if (words.to_float() == number || !Math::is_finite(number)) {
		return words;
	}
	PackedFloat64Array bits;
	bits.push_back(number);
	return "x" + bits.to_byte_array().hex_encode();
}

bool from_exact(const String &words, double &number) {
	if (words.begins_with("x")) {
		const String digits = words.substr(1);
		if (digits.length() != 16 || !digits.is_valid_hex_number(false)) {
			return false;
		}
		number = digits.hex_decode().decode_double(0);
		return true;
	}
	if (words == "inf" || words == "-inf" || words == "inf_neg") {
		number = words == "inf" ? std::numeric_limits<double>::infinity() : -std::numeric_limits<double>::infinity();
		return true;
	}
	if (words == "nan") {
		number = std::numeric_limits<double>::quiet_NaN();
		return true;
	}
	number = words.to_float();
	return words.is_valid_float();
}

class Encoder {
	const Place &place;

	bool encode_int(int64_t number, Variant &encoded) const {
		if (number < LEAST_ID) {
			encoded = "i:" + String::num_int64(number);
		} else if (place.ids.has(number)) {
			Node *node = Object::cast_to<Node>(ObjectDB::get_instance(ObjectID(uint64_t(number))));
			encoded = form(names().id, node != nullptr ? Variant(place.place_of(node)) : Variant());
		} else {
			encoded = place.forgets_strangers ? Variant(form(names().id, Variant())) : Variant("i:" + String::num_int64(number));
		}
		return true;
	}

	bool encode_object(const Variant &value, Variant &encoded) const {
		Object *object = value.get_validated_object();
		encoded = Variant();
		if (object == nullptr) {
			return true;
		}
		if (Node *node = Object::cast_to<Node>(object)) {
			const String at = place.place_of(node);
			encoded = form(names().node, at);
			return !at.is_empty();
		}
		const Resource *resource = Object::cast_to<Resource>(object);
		if (resource == nullptr || !is_of_the_game(resource->get_path())) {
			return false;
		}
		encoded = form(names().resource, resource->get_path());
		return true;
	}

	bool encode_list(const Array &list, Variant &encoded, int depth) const {
		Array kept;
		kept.resize(list.size());
		for (int64_t i = 0; i < list.size(); i++) {
			Variant item;
			if (!encode(list[i], item, depth + 1)) {
				return false;
			}
			kept[i] = item;
		}
		Dictionary held = form(names().list, kept);
		if (list.is_typed() && list.get_typed_builtin() != Variant::OBJECT) {
			held[names().typed] = list.get_typed_builtin();
		}
		encoded = held;
		return true;
	}

	static Variant::Type keys_of(const Array &keys) {
		const Variant::Type first = keys.is_empty() ? Variant::STRING : keys[0].get_type();
		for (int64_t i = 0; i < keys.size(); i++) {
			if (keys[i].get_type() != first || (first != Variant::STRING && first != Variant::STRING_NAME)) {
				return Variant::NIL;
			}
		}
		return first;
	}

	bool encode_table(const Dictionary &table, Variant &encoded, int depth) const {
		const Array keys = table.keys();
		const Variant::Type of = keys_of(keys);
		Dictionary named;
		Array pairs;
		for (int64_t i = 0; i < keys.size(); i++) {
			Variant key;
			Variant item;
			if (!encode(table[keys[i]], item, depth + 1)) {
				return false;
			}
			if (of != Variant::NIL) {
				named[String(keys[i])] = item;
				continue;
			}
			if (!encode(keys[i], key, depth + 1)) {
				return false;
			}
			pairs.push_back(key);
			pairs.push_back(item);
		}
		if (of == Variant::NIL) {
			encoded = form(names().pairs, pairs);
		} else {
			encoded = form(of == Variant::STRING ? names().texts : names().names, named);
		}
		return true;
	}

	static Dictionary form(const String &name, const Variant &content) {
		Dictionary made;
		made[name] = content;
		return made;
	}

public:
	explicit Encoder(const Place &seen_from) : place(seen_from) {}

	bool encode(const Variant &value, Variant &encoded, int depth = 0) const {
		if (depth > DEEPEST) {
			return false;
		}
		switch (value.get_type()) {
			case Variant::NIL:
			case Variant::BOOL:
				encoded = value;
				return true;
			case Variant::INT:
				return encode_int(value, encoded);
			case Variant::FLOAT:
				encoded = "f:" + exact(value);
				return true;
			case Variant::STRING:
				encoded = "s:" + String(value);
				return true;
			case Variant::STRING_NAME:
				encoded = "sn:" + String(StringName(value));
				return true;
			case Variant::NODE_PATH:
				encoded = "np:" + String(NodePath(value));
				return true;
			case Variant::OBJECT:
				return encode_object(value, encoded);
			case Variant::ARRAY:
				return encode_list(value, encoded, depth);
			case Variant::DICTIONARY:
				return encode_table(value, encoded, depth);
			case Variant::CALLABLE:
			case Variant::SIGNAL:
			case Variant::RID:
				return false;
			default:
				break;
		}
		Variant native;
		int64_t letters = 0;
		if (!saved_values::encode(value, native, letters)) {
			return false;
		}
		encoded = form(names().native, native);
		return true;
	}
};

class Decoder {
	const Place &place;

	static bool decode_text(const String &text, Variant &value) {
		const int64_t colon = text.find(":");
		const String kind = text.left(MAX(colon, int64_t(0)));
		const String words = text.substr(colon + 1);
		if (kind == "i") {
			value = words.to_int();
			return words.is_valid_int();
		}
		if (kind == "f") {
			double number = 0.0;
			const bool reads = from_exact(words, number);
			value = number;
			return reads;
		}
		if (kind == "s") {
			value = words;
		} else if (kind == "sn") {
			value = StringName(words);
		} else if (kind == "np") {
			value = NodePath(words);
		} else {
			return false;
		}
		return true;
	}

	bool decode_list(const Array &kept, const Variant &typed, Variant &value, int depth) const {
		Array list;
		for (int64_t i = 0; i < kept.size(); i++) {
			Variant item;
			if (!decode(kept[i], item, depth + 1)) {
				return false;
			}
			list.push_back(item);
		}
		value = list;
		if (typed.get_type() == Variant::NIL) {
			return true;
		}
		const double type = typed.get_type() == Variant::FLOAT || typed.get_type() == Variant::INT ? double(typed) : 0.0;
		if (!(type > Variant::NIL && type < Variant::VARIANT_MAX) || int(type) == Variant::OBJECT) {
			return false;
		}
		for (int64_t i = 0; i < list.size(); i++) {
			if (list[i].get_type() != Variant::Type(int(type))) {
				return false;
			}
		}
		value = Array(list, uint32_t(type), StringName(), Variant());
		return true;
	}

	bool decode_table(const Dictionary &kept, bool by_name, Variant &value, int depth) const {
		Dictionary table;
		const Array keys = kept.keys();
		for (int64_t i = 0; i < keys.size(); i++) {
			Variant item;
			if (!decode(kept[keys[i]], item, depth + 1)) {
				return false;
			}
			table[by_name ? Variant(StringName(keys[i].stringify())) : keys[i]] = item;
		}
		value = table;
		return true;
	}

	bool decode_pairs(const Array &kept, Variant &value, int depth) const {
		Dictionary table;
		for (int64_t i = 0; i + 1 < kept.size(); i += 2) {
			Variant key;
			Variant item;
			if (!decode(kept[i], key, depth + 1) || !decode(kept[i + 1], item, depth + 1)) {
				return false;
			}
			table[key] = item;
		}
		value = table;
		return kept.size() % 2 == 0;
	}

	bool decode_form(const Dictionary &form, Variant &value, int depth) const {
		const Names &n = names();
		const Variant name = form.is_empty() ? Variant() : form.keys()[0];
		const Variant content = form.is_empty() ? Variant() : form.values()[0];
		const Variant::Type type = content.get_type();
		if (form.has(n.list)) {
			const Variant list = form[n.list];
			return list.get_type() == Variant::ARRAY && decode_list(list, form.get(n.typed, Variant()), value, depth);
		}
		if (form.size() != 1) {
			return false;
		}
		if (name == Variant(n.node)) {
			value = type == Variant::STRING ? Variant(place.node_at(content)) : Variant();
			return type == Variant::STRING;
		}
		if (name == Variant(n.id)) {
			const Node *node = type == Variant::STRING ? place.node_at(content) : nullptr;
			value = node != nullptr ? int64_t(node->get_instance_id()) : int64_t(0);
			return type == Variant::STRING || type == Variant::NIL;
		}
		if (name == Variant(n.resource)) {
			value = is_of_the_game(content) ? Variant(ResourceLoader::get_singleton()->load(content)) : Variant();
			return type == Variant::STRING;
		}
		if (name == Variant(n.texts) || name == Variant(n.names)) {
			return type == Variant::DICTIONARY && decode_table(content, name == Variant(n.names), value, depth);
		}
		if (name == Variant(n.pairs)) {
			return type == Variant::ARRAY && decode_pairs(content, value, depth);
		}
		return name == Variant(n.native) && saved_values::decode(content, value) == saved_values::DECODED;
	}

public:
	explicit Decoder(const Place &seen_from) : place(seen_from) {}

	bool decode(const Variant &kept, Variant &value, int depth = 0) const {
		value = Variant();
		if (depth > DEEPEST) {
			return false;
		}
		switch (kept.get_type()) {
			case Variant::NIL:
			case Variant::BOOL:
				value = kept;
				return true;
			case Variant::STRING:
				return decode_text(kept, value);
			case Variant::DICTIONARY:
				return decode_form(kept, value, depth);
			default:
				return false;
		}
	}
};

Place place_in(const Array &arguments) {
	Place place;
	place.scene = Object::cast_to<Node>(arguments[1].get_validated_object());
	if (arguments[2].get_type() == Variant::DICTIONARY) {
		place.ids = arguments[2];
		place.placed = arguments[2];
	}
	place.forgets_strangers = arguments.size() > 3 && arguments[3].booleanize();
	return place;
}

// The value, the scene, the ids of its nodes, whether strangers are forgotten. In a list, as nothing is a value too.
Variant help_encode(const Array &arguments) {
	Variant encoded;
	return arguments.size() == 4 && encode(place_in(arguments), arguments[0], encoded) ? Variant(Array::make(encoded)) : Variant();
}

// What is kept, the scene, the nodes that stand elsewhere.
Variant help_decode(const Array &arguments) {
	Variant value;
	return arguments.size() == 3 && decode(place_in(arguments), arguments[0], value) ? Variant(Array::make(value)) : Variant();
}

// By property what it is when nobody has changed it, then as for encoding, the node, and what is like it in the file: those that
// are different, encoded, by name.
Variant help_differences(const Array &arguments) {
	const Node *node = arguments.size() == 6 ? Object::cast_to<Node>(arguments[4].get_validated_object()) : nullptr;
	if (node == nullptr) {
		return Dictionary();
	}
	const Place place = place_in(arguments);
	const Object *twin = arguments[5].get_validated_object();
	const Dictionary before = arguments[0];
	const Array names_before = before.keys();
	Dictionary found;
	for (int64_t i = 0; i < names_before.size(); i++) {
		const StringName name = names_before[i];
		const Variant now = node->get(name);
		const Variant was = twin != nullptr ? twin->get(name) : before[names_before[i]];
		Variant encoded;
		if ((now.get_type() != was.get_type() || now != was) && encode(place, now, encoded)) {
			found[String(name)] = encoded;
		}
	}
	return found;
}

} // namespace

String Place::place_of(Node *node) const {
	if (scene == nullptr) {
		return String();
	}
	if (node == scene || scene->is_ancestor_of(node)) {
		return String(scene->get_path_to(node));
	}
	// Made by a machine while no scene was being played, and therefore at the top of the tree.
	if (!scene->is_inside_tree() || !node->is_inside_tree() || scene == scene->get_tree()->get_current_scene()) {
		return String();
	}
	Node *top = node;
	while (top->get_parent() != nullptr && top->get_parent() != scene->get_tree()->get_root()) {
		top = top->get_parent();
	}
	return top->has_meta(names().made_by) ? String(scene->get_path_to(node)) : String();
}

Node *Place::node_at(const String &path) const {
	if (scene == nullptr || path.is_empty() || path.is_absolute_path() || path.trim_prefix("../").contains("../") || path.ends_with("/..")) {
		return nullptr;
	}
	// It, or something above it, may stand elsewhere.
	String above = path;
	while (true) {
		if (placed.has(above)) {
			Node *node = Object::cast_to<Node>(placed[above].get_validated_object());
			const bool is_it = above == path;
			return node == nullptr || is_it ? node : node->get_node_or_null(NodePath(path.substr(above.length() + 1)));
		}
		const int64_t slash = above.rfind("/");
		if (slash < 0) {
			return scene->get_node_or_null(NodePath(path));
		}
		above = above.left(slash);
	}
}

bool encode(const Place &place, const Variant &value, Variant &encoded) {
	return Encoder(place).encode(value, encoded);
}

bool decode(const Place &place, const Variant &kept, Variant &value) {
	return Decoder(place).decode(kept, value);
}

void add_helpers() {
	SCNativeActions::add_helper("encode_in_scene", &help_encode);
	SCNativeActions::add_helper("decode_in_scene", &help_decode);
	SCNativeActions::add_helper("differences_in_scene", &help_differences);
}

} // namespace scene_values
