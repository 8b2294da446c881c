#include "machine/script_methods.hpp"

#include <godot_cpp/classes/script.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/typed_array.hpp>

using namespace godot;

namespace {

using MethodCounts = HashMap<StringName, int>;
HashMap<uint64_t, MethodCounts> *counts_by_script = nullptr;

const MethodCounts &counts_of(const Ref<Script> &script) {
	if (counts_by_script == nullptr) {
		counts_by_script = memnew((HashMap<uint64_t, MethodCounts>));
	}
	const uint64_t id = script->get_instance_id();
	if (const MethodCounts *found = counts_by_script->getptr(id)) {
		return *found;
	}
	MethodCounts counts;
	const TypedArray<Dictionary> methods = script->get_script_method_list();
	for (int64_t i = 0; i < methods.size(); i++) {
		const Dictionary method = methods[i];
		counts[StringName(method["name"])]++;
	}
	counts_by_script->insert(id, counts);
	return *counts_by_script->getptr(id);
}

int count_of(Object *object, const StringName &method) {
	const Ref<Script> script = object->get_script();
	const int *count = script.is_valid() ? counts_of(script).getptr(method) : nullptr;
	return count != nullptr ? *count : 0;
}

} // namespace

// The list of a script holds its own methods and those of the scripts below it: one that stands there
// twice is defined by a base and again by a script that extends it.
bool ScriptMethods::overrides(Object *object, const StringName &method) {
	return count_of(object, method) >= 2;
}

bool ScriptMethods::defines(Object *object, const StringName &method) {
	return count_of(object, method) >= 1;
}

void ScriptMethods::free_shared() {
	if (counts_by_script != nullptr) {
		memdelete(counts_by_script);
		counts_by_script = nullptr;
	}
}
