#include "inventory/items.hpp"

#include "action/words.hpp"
#include "machine/native_names.hpp"

namespace items {

namespace {

struct ItemNames {
	StringName script = "item";
	StringName shown_name = "shown_name";
	StringName key = "key";
	StringName resource = "Resource";
};

const ItemNames &names() {
	return NativeNames::of<ItemNames>();
}

String told_by(const Ref<Resource> &item, const StringName &method, const String &otherwise) {
	return is_item(item.ptr()) ? String(item->call(method)) : otherwise;
}

} // namespace

bool is_item(const Object *object) {
	return CompanionScripts::is_one(object, names().script);
}

Array none() {
	const Ref<Script> script = CompanionScripts::script(names().script);
	return script.is_valid() ? Array(Array(), Variant::OBJECT, names().resource, script) : Array();
}

String shown_name(const Ref<Resource> &item) {
	return told_by(item, names().shown_name, "nothing");
}

String key_of(const Ref<Resource> &item) {
	return told_by(item, names().key, String());
}

Variant ask(const Ref<Resource> &item, const StringName &member) {
	return item.is_valid() ? item->get(member) : Variant();
}

Meant meant(SCMachineBase *machine, const Ref<Resource> &picked, const StringName &variable) {
	if (!variable.is_empty()) {
		const Ref<Resource> held = values::item_in(machine, variable);
		return { held, held.is_valid() ? String() : vformat("the variable %s holds no item", variable) };
	}
	if (picked.is_null()) {
		return { picked, "no Item is picked" };
	}
	if (!is_item(picked.ptr())) {
		return { Ref<Resource>(), vformat("what is picked as Item is %s, not an item", values::kind_in_words(picked)) };
	}
	return { picked, String() };
}

String in_line(const Ref<Resource> &picked, const StringName &variable) {
	return words::variable_or(variable, is_item(picked.ptr()) ? shown_name(picked) : String("(pick one)"));
}

} // namespace items
