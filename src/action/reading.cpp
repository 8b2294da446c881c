#include "action/reading.hpp"

#include "action/action_shared.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/value_kinds.hpp"
#include "machine_node/sc_machine_base.hpp"
#include "settings/class_rows.hpp"

namespace reading {

namespace {

// What the setting becomes.
Variant read_one(Object *object, const StringName &setting, const StringName &variable, const Variant &typed_in, SCMachineBase *machine) {
	const bool is_path = typed_in.get_type() == Variant::NODE_PATH;
	if (variable.is_empty()) {
		return is_path ? Variant(NodePath()) : typed_in;
	}
	const Variant found = machine->get_value(variable);
	const Variant held = ValueKinds::is_nothing(found) ? Variant() : found;
	if (is_path) {
		return values::path_to(machine, held);
	}
	if (held.get_type() == Variant::NIL && !machine->has_value(variable)) {
		return typed_in;
	}
	if (held.get_type() == typed_in.get_type()) {
		return held;
	}
	if (!values::can_fit(typed_in, held)) {
		const ClassRow *row = KindFields::of(object).row;
		const SettingRow *declared = row != nullptr ? row->setting(setting) : nullptr;
		if (declared != nullptr && declared->any_type) {
			// What it happens to hold is no demand on what it may be given.
			return held;
		}
		say_it_cannot_fit(object, setting, variable, held, typed_in, machine);
	}
	return values::fitted_to(typed_in, held);
}

} // namespace

void read_variables_into(Object *object, const Dictionary &named, Dictionary typed_in, SCMachineBase *machine) {
	if (named.is_empty() || object == nullptr) {
		return;
	}
	if (machine == nullptr) {
		values::report_null("read_variables_into", "p_machine");
		return;
	}
	// A setter of a game maker's script may do anything, so both are looked up again at every step.
	const uint64_t object_id = object->get_instance_id();
	const uint64_t machine_id = machine->get_instance_id();
	const Array settings = named.keys();
	for (int64_t i = 0; i < settings.size(); i++) {
		read_one_into(object, settings[i], named, typed_in, machine);
		if (ObjectDB::get_instance(object_id) == nullptr || ObjectDB::get_instance(machine_id) == nullptr) {
			return;
		}
	}
}

void read_one_into(Object *object, const StringName &setting, const Dictionary &named, Dictionary typed_in, SCMachineBase *machine) {
	const uint64_t object_id = object->get_instance_id();
	if (!typed_in.has(setting)) {
		typed_in[setting] = object->get(setting);
	}
	const Variant value = read_one(object, setting, named.get(setting, StringName()), typed_in[setting], machine);
	if (ObjectDB::get_instance(object_id) != nullptr) {
		object->set(setting, value);
	}
}

void say_it_cannot_fit(
		Object *object, const StringName &setting, const StringName &variable, const Variant &held, const Variant &typed_in, SCMachineBase *machine) {
	if (object == nullptr || machine == nullptr) {
		values::report_null("_say_it_cannot_fit", object == nullptr ? "p_object" : "p_machine");
		return;
	}
	ActionShared &shared = ActionShared::get();
	const String key = vformat("%d:%s:%d", object->get_instance_id(), setting, machine->get_instance_id());
	if (shared.said_cannot_fit.has(key)) {
		return;
	}
	shared.said_cannot_fit.insert(key);
	String kind = String(Kind::of(object).name()).trim_prefix("SC").trim_suffix("Action").trim_suffix("Condition");
	if (kind.is_empty()) {
		kind = "An action";
	}
	const String line_form = words::property_in_line(setting);
	const String text = vformat("%s on %s cannot use %s for %s, because %s holds %s, and %s needs %s. It used the value typed in instead. Pick a variable of "
								"the right kind in its Var list, or change what %s holds.",
			kind, machine->name_in_messages(), variable, line_form, variable, values::kind_in_words(held), line_form, values::kind_in_words(typed_in),
			variable);
	MakerWarnings::once_for(machine, vformat("cannot fit %s", key), text);
}

} // namespace reading
