#include "inventory/bags.hpp"

#include "action/action_shared.hpp"
#include "action/words.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/core/math.hpp>

namespace bags {

namespace {

struct BagNames {
	StringName script = "bag";
	StringName on = "on";
	StringName add = "add";
	StringName take = "take";
	StringName put_back = "put_back";
	StringName has = "has";
	StringName count = "count";
	StringName stacks = "stacks";
	StringName room_for = "room_for";
	StringName move_to = "move_to";
	StringName worn = "worn";
	StringName is_full = "is_full";
	StringName sort_by = "sort_by";
	StringName held = "held";
	StringName item = "item";
	StringName slot_names = "slot_names";
	StringName slots = "slots";
};

const BagNames &names() {
	return NativeNames::of<BagNames>();
}

// Beyond what anybody can hold, and still exact.
constexpr double MOST = 1.0e12;

// What a script of the game's own answers may be of any type.
int64_t whole(const Variant &answer) {
	return answer.get_type() == Variant::INT ? int64_t(answer) : 0;
}

} // namespace

Node *on(const Node *node, Which which) {
	if (node == nullptr) {
		return nullptr;
	}
	const Variant found = CompanionScripts::call(names().script, names().on, Array::make(node, int64_t(which)));
	return Object::cast_to<Node>(found.get_validated_object());
}

Node *at(SCMachineBase *machine, const NodePath &path, Which which) {
	return on(values::node_of(machine, path), which);
}

int64_t add(Node *bag, const Ref<Resource> &item, int64_t how_many) {
	return whole(bag->call(names().add, item, how_many));
}

void take(Node *bag, const Ref<Resource> &item, int64_t how_many) {
	bag->call(names().take, item, how_many);
}

void put_back(Node *bag, const Ref<Resource> &item, int64_t how_many) {
	bag->call(names().put_back, item, how_many);
}

bool has(Node *bag, const Ref<Resource> &item, int64_t how_many) {
	return bag->call(names().has, item, how_many).booleanize();
}

int64_t count(Node *bag, const Ref<Resource> &item) {
	return whole(bag->call(names().count, item));
}

int64_t stacks(Node *bag) {
	return whole(bag->call(names().stacks));
}

int64_t room_for(Node *bag, const Ref<Resource> &item) {
	return whole(bag->call(names().room_for, item));
}

int64_t move_to(Node *bag, Node *other, const Ref<Resource> &item, int64_t how_many) {
	return whole(bag->call(names().move_to, other, item, how_many));
}

Ref<Resource> worn(Node *bag, const StringName &slot) {
	return Object::cast_to<Resource>(bag->call(names().worn, slot).get_validated_object());
}

bool is_full(Node *bag) {
	return bag->call(names().is_full).booleanize();
}

void sort_by(Node *bag, int64_t order) {
	bag->call(names().sort_by, order);
}

Array held_items(Node *bag) {
	const Variant held = bag->get(names().held);
	Array found;
	if (held.get_type() != Variant::ARRAY) {
		return found;
	}
	for (const Variant &stack : Array(held)) {
		const Object *object = stack.get_validated_object();
		const Variant item = object != nullptr ? object->get(names().item) : Variant();
		if (item.get_validated_object() != nullptr) {
			found.push_back(item);
		}
	}
	return found;
}

Array slot_names(Node *bag) {
	const Variant given = bag->get(names().slot_names);
	return given.get_type() == Variant::ARRAY ? Array(given) : Array();
}

int64_t slots(Node *bag) {
	return whole(bag->get(names().slots));
}

int64_t how_many(SCMachineBase *machine, int64_t typed_in, const StringName &variable) {
	if (variable.is_empty()) {
		return typed_in;
	}
	const double held = values::number_of(machine, double(typed_in), variable);
	return Math::is_nan(held) ? 0 : int64_t(Math::round(CLAMP(held, -MOST, MOST)));
}

String under(SCMachineBase *machine, const NodePath &path) {
	const Node *node = path.is_empty() ? nullptr : values::node_of(machine, path);
	if (node == nullptr) {
		node = machine->target_node();
	}
	return node != nullptr ? String(node->get_name()) : String("the machine's node");
}

String none_to(SCMachineBase *machine, const NodePath &path, const char *kind, const char *what) {
	return vformat("%s on %s: there is no Inventory to %s. Add an Inventory node under %s, or point Bag at one.", kind, machine->name_in_messages(), what,
			under(machine, path));
}

String path_in_words(const NodePath &path) {
	return path == ActionShared::get().no_node ? words::name_in_line(path) : String(path);
}

String in_line(const NodePath &path, const String &otherwise) {
	return words::name_in_line(path, "Self", otherwise);
}

String how_many_in_line(int64_t typed_in, const StringName &variable, const String &below_one) {
	return words::variable_or(variable, typed_in < 1 && !below_one.is_empty() ? below_one : String::num_int64(typed_in));
}

} // namespace bags
