#include "machine/companion_scripts.hpp"

#include <godot_cpp/classes/resource_loader.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

HashMap<StringName, Ref<Script>> *scripts = nullptr;

} // namespace

Ref<Script> CompanionScripts::script(const StringName &file) {
	if (scripts == nullptr) {
		scripts = memnew((HashMap<StringName, Ref<Script>>));
	}
	if (const Ref<Script> *found = scripts->getptr(file)) {
		return *found;
	}
	const Ref<Script> loaded = ResourceLoader::get_singleton()->load(vformat("res://addons/quillstead/runtime/%s.gd", file));
	if (loaded.is_valid()) {
		scripts->insert(file, loaded);
	}
	return loaded;
}

Variant CompanionScripts::call(const StringName &file, const StringName &method, const Array &arguments) {
	const Ref<Script> on = script(file);
	return on.is_valid() ? on->callv(method, arguments) : Variant();
}

Variant CompanionScripts::constant(const StringName &file, const StringName &name) {
	const Ref<Script> on = script(file);
	return on.is_valid() ? on->get_script_constant_map().get(name, Variant()) : Variant();
}

bool CompanionScripts::is_one(const Object *object, const StringName &file) {
	Ref<Script> has = object != nullptr ? object->get_script() : Variant();
	if (has.is_null()) {
		return false;
	}
	const Ref<Script> wanted = script(file);
	for (; has.is_valid(); has = has->get_base_script()) {
		if (has == wanted) {
			return true;
		}
	}
	return false;
}

Node *CompanionScripts::first_child(const Node *node, const StringName &file) {
	const int count = node != nullptr ? node->get_child_count() : 0;
	for (int i = 0; i < count; i++) {
		Node *child = node->get_child(i);
		if (is_one(child, file)) {
			return child;
		}
	}
	return nullptr;
}

void CompanionScripts::free_shared() {
	if (scripts != nullptr) {
		memdelete(scripts);
		scripts = nullptr;
	}
}

void MakerWarnings::once_for(Object *machine, const String &key, const String &text) {
	if (CompanionScripts::script("quillstead_warnings").is_valid()) {
		CompanionScripts::call("quillstead_warnings", "once_for", Array::make(machine, key, text));
	} else {
		UtilityFunctions::push_warning(text);
	}
}

void MakerWarnings::say(const String &text) {
	if (CompanionScripts::script("quillstead_warnings").is_valid()) {
		CompanionScripts::call("quillstead_warnings", "say", Array::make(text));
	} else {
		UtilityFunctions::push_warning(text);
	}
}
