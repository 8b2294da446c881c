#include "action/sc_native_actions.hpp"

#include "action/sc_action.hpp"
#include "action/sc_condition.hpp"
#include "action/static_facilities.hpp"
#include "machine_node/sc_machine.hpp"
#include "settings/class_rows.hpp"

#include <godot_cpp/classes/script.hpp>
#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>

void SCNativeAction::enter(SCMachineBase *, SCMachineAction *, int) {}
void SCNativeAction::update(SCMachineBase *, SCMachineAction *, int, double) {}
void SCNativeAction::exit(SCMachineBase *, SCMachineAction *, int) {}
void SCNativeAction::other(SCMachineBase *, SCMachineAction *, int, int) {}
bool SCNativeAction::take_up(SCMachineBase *, SCMachineAction *, int) {
	return false;
}

namespace {

struct NativeTables {
	HashMap<StringName, NativeEntry> by_word;
	HashMap<String, const NativeEntry *> by_path;
	// By script id: what was found, or null for a script that is no kind's own.
	HashMap<uint64_t, const NativeEntry *> by_script;
	HashMap<String, NativeCondition> conditions;
	HashMap<uint64_t, NativeCondition> conditions_by_script;
	HashMap<StringName, NativeHelper> helpers;
};

NativeTables *tables = nullptr;

NativeTables &shared_tables() {
	if (tables == nullptr) {
		tables = memnew(NativeTables);
		static_facilities::add_helpers();
		register_all_natives();
	}
	return *tables;
}

// A kind's own script stands for the kind; a script that extends it under another path does not.
template <class Found>
Found found_for(Object *object, const HashMap<String, Found> &by_path, HashMap<uint64_t, Found> &by_script) {
	const Ref<Script> script = object->get_script();
	if (script.is_null()) {
		const Found *found = by_path.getptr(ClassRows::shared().script_path_of(object->get_class()));
		return found != nullptr ? *found : nullptr;
	}
	const uint64_t id = script->get_instance_id();
	if (const Found *known = by_script.getptr(id)) {
		return *known;
	}
	const Found *found = by_path.getptr(script->get_path());
	const Found answer = found != nullptr ? *found : nullptr;
	by_script.insert(id, answer);
	return answer;
}

} // namespace

const NativeEntry *SCNativeActions::of_action(Object *action) {
	return action != nullptr ? found_for(action, shared_tables().by_path, shared_tables().by_script) : nullptr;
}

const NativeEntry *SCNativeActions::of_word(const StringName &word) {
	return shared_tables().by_word.getptr(word);
}

NativeCondition SCNativeActions::of_condition(Object *condition) {
	return condition != nullptr ? found_for(condition, shared_tables().conditions, shared_tables().conditions_by_script) : nullptr;
}

bool SCNativeActions::has_helper(const StringName &name) {
	return shared_tables().helpers.has(name);
}

Variant SCNativeActions::call_helper(const StringName &name, const Array &arguments) {
	const NativeHelper *found = shared_tables().helpers.getptr(name);
	if (found == nullptr) {
		_err_print_error("sc_native_helper", __FILE__, __LINE__, "Parameter \"found\" is null.", vformat("QuillStead has no compiled helper called %s.", name),
				false, true);
		return Variant();
	}
	return (*found)(arguments);
}

void SCNativeActions::call(int what, Object *action, Object *machine, int index, double delta) {
	SCMachine *on = Object::cast_to<SCMachine>(machine);
	SCMachineAction *compiled = Object::cast_to<SCMachineAction>(action);
	const NativeEntry *entry = on != nullptr && compiled != nullptr ? of_action(compiled) : nullptr;
	const bool is_operation = what >= 0 && what <= 2;
	if (entry == nullptr || (is_operation && !compiled->read_variables_first(on))) {
		return;
	}
	const Ref<SCMachineAction> held(compiled);
	if (what == 0) {
		entry->runtime->enter(on, compiled, index);
	} else if (what == 1 && entry->has_update) {
		entry->runtime->update(on, compiled, index, delta);
	} else if (what == 2 && entry->has_exit) {
		entry->runtime->exit(on, compiled, index);
	} else if (!is_operation && entry->has_other) {
		entry->runtime->other(on, compiled, index, what);
	}
}

// The maps keep entries where they are while others are added, so a pointer to one may be kept.
void SCNativeActions::add_entry(const StringName &word, const String &script_path, const NativeEntry &entry) {
	shared_tables().by_word.insert(word, entry);
	shared_tables().by_path.insert(script_path, shared_tables().by_word.getptr(word));
}

void SCNativeActions::add_condition(const String &script_path, NativeCondition check) {
	shared_tables().conditions.insert(script_path, check);
}

void SCNativeActions::add_helper(const StringName &name, NativeHelper helper) {
	shared_tables().helpers.insert(name, helper);
}

void SCNativeActions::free_shared() {
	if (tables != nullptr) {
		memdelete(tables);
		tables = nullptr;
	}
}
