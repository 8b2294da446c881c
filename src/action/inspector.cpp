#include "action/inspector.hpp"

#include "action/action_shared.hpp"
#include "action/places.hpp"
#include "action/sc_action.hpp"
#include "action/twins.hpp"
#include "action/variable_names.hpp"
#include "machine_node/sc_machine.hpp"
#include "settings/class_rows.hpp"
#include "settings/plumbing.hpp"
#include "settings/setting_rules.hpp"
#include "settings/shown_names.hpp"

#include <godot_cpp/classes/class_db_singleton.hpp>
#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/object.hpp>

namespace inspector {

namespace {

// Settings that mean something on one side only.
struct SideBound {
	const char *kind;
	const char *setting;
	bool on_2d;
};
constexpr SideBound SIDE_BOUND[] = {
	{ "SCSetVelocityAction", "set_z", false },
	{ "SCTakeCoverAction", "eye_height", false },
	{ "SCSetGravityAction", "turn_picture", true },
};

const SCMachine *machine_behind(const Object *object) {
	if (const SCMachine *machine = Object::cast_to<SCMachine>(object)) {
		return machine;
	}
	const Variant behind = object != nullptr ? object->get(ActionShared::get().machine) : Variant();
	return behind.get_type() == Variant::OBJECT ? Object::cast_to<SCMachine>(behind.get_validated_object()) : nullptr;
}

void hide_what_is_on_the_other_side(const Object *object, PropertyInfo &property) {
	for (const SideBound &bound : SIDE_BOUND) {
		if (property.name == StringName(bound.setting) && Kind::of(object).name() == StringName(bound.kind) && shown_on_2d_known(object) &&
				shown_on_2d(object) != bound.on_2d) {
			hide_from_inspector(property);
		}
	}
}

// "@export var value: Variant = 0" names a setting of any type.
void find_exported_variants(const Ref<Script> &script, AnyTypeSettings &settings) {
	const PackedStringArray lines = script->get_source_code().split("\n", false);
	for (int64_t i = 0; i < lines.size(); i++) {
		const String line = lines[i].strip_edges();
		const int64_t at = line.find("var ");
		if (line.begins_with("@export") && line.contains(": Variant") && at >= 0) {
			settings.names.insert(line.substr(at + 4).get_slice(":", 0).strip_edges());
		}
	}
}

} // namespace

// A setting and the twin that reads it from a variable are shown and hidden together.
void hide_by_rules(const Object *object, PropertyInfo &property) {
	const ClassRow *row = KindFields::of(const_cast<Object *>(object)).row;
	if (row == nullptr || !row->has_rules) {
		return;
	}
	const SettingRow *setting = row->setting(property.name);
	if (setting == nullptr && ends_in_variable(property.name)) {
		const StringName *behind = twins::of_object(object).setting_of_twin.getptr(property.name);
		setting = behind != nullptr ? row->setting(*behind) : nullptr;
	}
	if (setting != nullptr && !setting_rules::all_hold(setting->shown_if, object)) {
		hide_from_inspector(property);
	}
}

void validate(const Object *object, PropertyInfo &property) {
	const ActionShared &shared = ActionShared::get();
	hide_by_rules(object, property);
	hide_what_is_on_the_other_side(object, property);
	if (is_plumbing(property.name)) {
		hide_from_inspector(property);
	}
	shown_names::leave_out_of_files(object, property);
	if (property.name == shared.run_mode) {
		const SCMachineAction *action = Object::cast_to<SCMachineAction>(object);
		if (action != nullptr && !const_cast<SCMachineAction *>(action)->uses_run_mode()) {
			property.usage = PROPERTY_USAGE_STORAGE;
		}
	}
	if (Engine::get_singleton()->is_editor_hint() && holds_any_type(Kind::of(object), property.name)) {
		show_as_any_type(property);
	}
	if (property.hint == PROPERTY_HINT_LAYERS_3D_PHYSICS && shown_on_2d(object)) {
		property.hint = PROPERTY_HINT_LAYERS_2D_PHYSICS;
	}
}

void validate(const Object *object, Dictionary described) {
	PropertyInfo property = property_from(described);
	validate(object, property);
	described["type"] = int64_t(property.type);
	described["hint"] = int64_t(property.hint);
	described["hint_string"] = property.hint_string;
	described["usage"] = int64_t(property.usage);
}

bool holds_any_type(const Kind &kind, const StringName &setting) {
	if (!Engine::get_singleton()->is_editor_hint()) {
		return false;
	}
	if (ClassRows::shared().takes_any_type(kind.native_class, setting)) {
		return true;
	}
	if (kind.script.is_null()) {
		return false;
	}
	const AnyTypeSettings &settings = ActionShared::get().any_type.of(kind, [&kind](AnyTypeSettings &found) {
		for (Ref<Script> at = kind.script; at.is_valid(); at = at->get_base_script()) {
			find_exported_variants(at, found);
		}
	});
	return settings.names.has(setting);
}

// In the editor no machine has resolved its target, so its path is followed here.
bool shown_on_2d(const Object *object) {
	const SCMachine *machine = machine_behind(object);
	if (machine == nullptr) {
		return ActionShared::get().shown_on_2d == 1;
	}
	return places::is_2d(machine->target_path.is_empty() ? machine->get_parent() : machine->get_node_or_null(machine->target_path));
}

bool shown_on_2d_known(const Object *object) {
	return ActionShared::get().shown_on_2d != -1 || machine_behind(object) != nullptr;
}

void show_as_any_type(PropertyInfo &property) {
	property.usage |= PROPERTY_USAGE_NIL_IS_VARIANT;
	property.type = Variant::NIL;
}

int64_t starting_run_mode(const Kind &kind) {
	const StringName &run_mode = ActionShared::get().run_mode;
	if (kind.script.is_valid() && kind.script->can_instantiate() && ClassDB::is_parent_class(kind.native_class, "Resource")) {
		const Variant made = ClassDB::instantiate(kind.native_class);
		Object *fresh = made.get_validated_object();
		if (fresh != nullptr) {
			fresh->set_script(kind.script);
			return fresh->get(run_mode);
		}
	}
	return ClassDB::class_get_property_default_value(kind.native_class, run_mode);
}

} // namespace inspector
