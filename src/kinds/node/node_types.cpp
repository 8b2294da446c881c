#include "kinds/node/node_types.hpp"

#include "action/shared_verbs.hpp"

#include <godot_cpp/classes/class_db_singleton.hpp>
#include <godot_cpp/classes/project_settings.hpp>
#include <godot_cpp/classes/resource_loader.hpp>
#include <godot_cpp/variant/typed_array.hpp>

namespace node_types {

namespace {

String path_of(const StringName &type) {
	const TypedArray<Dictionary> listed = ProjectSettings::get_singleton()->get_global_class_list();
	for (int64_t i = 0; i < listed.size(); i++) {
		const Dictionary row = listed[i];
		if (StringName(row.get("class", StringName())) == type) {
			return row.get("path", String());
		}
	}
	return String();
}

} // namespace

bool is_known(const StringName &type) {
	return ClassDBSingleton::get_singleton()->class_exists(type) || !path_of(type).is_empty();
}

bool is_a(const Object *object, const StringName &type) {
	if (object->is_class(type)) {
		return true;
	}
	Ref<Script> script = object->get_script();
	while (script.is_valid()) {
		if (script->get_global_name() == type) {
			return true;
		}
		script = script->get_base_script();
	}
	return false;
}

Ref<Script> script_of(const StringName &type) {
	const String path = path_of(type);
	return path.is_empty() ? Ref<Script>() : Ref<Script>(ResourceLoader::get_singleton()->load(path));
}

bool known_or_warn(SCMachineBase *machine, const Object *kind, const StringName &type, const StringName &setting, const char *instead) {
	if (type.is_empty() || is_known(type)) {
		return true;
	}
	verbs::warn(machine, kind, vformat("there is no kind of node called %s, so %s. Pick one under %s.", type, instead, verbs::setting_in_inspector(setting)));
	return false;
}

} // namespace node_types
