#include "action/bound_settings.hpp"

#include "action/kind.hpp"
#include "action/reading.hpp"
#include "action/values.hpp"
#include "action/variable_names.hpp"
#include "machine/machine_run.hpp"
#include "machine/value_kinds.hpp"
#include "machine_node/sc_machine_base.hpp"
#include "settings/class_rows.hpp"

#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>

namespace {

bool counts(Variant::Type type) {
	return type == Variant::BOOL || type == Variant::INT || type == Variant::FLOAT;
}

// A script that stands between may take a setting for itself.
bool is_the_kind_itself(Object *object, const ClassRow *row) {
	const Ref<Script> script = object->get_script();
	return row != nullptr && (script.is_null() || script->get_path() == row->script_path);
}

struct BoundSetting {
	StringName setting;
	StringName variable;
	Variant typed_in;
	// What was typed in is a value of its own and no node or path, so that another of its type only has to be written.
	bool is_simple = false;
	// Null for one that is set by its name.
	SettingRow::Assign assign = nullptr;

	bool takes(const Variant &held) const {
		const Variant::Type wanted = typed_in.get_type();
		const Variant::Type type = held.get_type();
		return type == wanted || (counts(type) && counts(wanted));
	}
	// As what `assign` answers.
	bool write(Object *object, const Variant &held) const {
		if (held.get_type() != typed_in.get_type()) {
			return put(object, values::fitted_to(typed_in, held));
		}
		return put(object, held);
	}

private:
	bool put(Object *object, const Variant &value) const {
		if (assign != nullptr) {
			return assign(object, value);
		}
		// The variable may be written, and its machine freed, while the setter runs.
		const Variant kept = value;
		object->set(setting, kept);
		return false;
	}
};

} // namespace

struct BoundSettings::Rows {
	uint32_t holders = 0;
	uint64_t object_id = 0;
	// As it was when this was worked out.
	Dictionary named;
	// The order of its entries counts where user code can be called between them.
	uint32_t order = 0;
	bool in_order = false;
	LocalVector<BoundSetting> settings;

	bool still_say(const Dictionary &now) const { return named == now && (!in_order || order == uint32_t(now.hash())); }
};

BoundSettings::BoundSettings() = default;
BoundSettings::~BoundSettings() = default;

void BoundSettings::forget() {
	rows.let_go();
}

void BoundSettings::work_out(Object *object, const Dictionary &named, const Dictionary &typed_in) {
	const Held<Rows> fresh(memnew(Rows));
	fresh->object_id = object->get_instance_id();
	fresh->named = named.duplicate();
	fresh->order = uint32_t(named.hash());
	const ClassRow *row = KindFields::of(object).row;
	const bool by_field = is_the_kind_itself(object, row);
	const Array settings = named.keys();
	for (int64_t i = 0; i < settings.size(); i++) {
		BoundSetting bound;
		bound.setting = settings[i];
		bound.variable = named.get(bound.setting, StringName());
		if (!bound.variable.is_empty() && typed_in.has(bound.setting)) {
			const Variant remembered = typed_in.get(bound.setting, Variant());
			bound.is_simple = !ValueKinds::may_call_out(remembered.get_type()) && remembered.get_type() != Variant::NODE_PATH;
			bound.typed_in = bound.is_simple ? remembered : Variant();
		}
		// A pretend property goes through the hook that makes it up.
		const SettingRow *declared = by_field && bound.is_simple && !ends_in_variable(bound.setting) ? row->setting(bound.setting) : nullptr;
		if (declared != nullptr && (declared->any_type || declared->info.type == bound.typed_in.get_type())) {
			bound.assign = declared->assign;
		}
		fresh->in_order = fresh->in_order || bound.assign == nullptr;
		fresh->settings.push_back(bound);
	}
	rows = fresh;
}

void BoundSettings::read_into(Object *object, const Dictionary &named, const Dictionary &typed_in, SCMachineBase *machine) {
	if (by_name_alone || machine == nullptr) {
		reading::read_variables_into(object, named, typed_in, machine);
		return;
	}
	// With it the run stays readable, and tells whether the machine is still there.
	MachineRun &run = machine->run();
	const MachineRun::Busy keep(run);
	if (!rows.is_valid() || !rows->still_say(named)) {
		rows.let_go();
		if (named.is_empty()) {
			return;
		}
		// By name the first time, as that is how what was typed in is remembered.
		const uint64_t object_id = object->get_instance_id();
		reading::read_variables_into(object, named, typed_in, machine);
		if (ObjectDB::get_instance(object_id) != nullptr && run.machine() != nullptr) {
			work_out(object, named, typed_in);
		}
		return;
	}
	// Kept for the length of the pass, in which it may be worked out anew.
	const Held<Rows> pass = rows;
	bool still_true = true;
	for (const BoundSetting &bound : pass->settings) {
		const Variant *held = still_true && bound.is_simple ? run.find_value(bound.variable) : nullptr;
		bool quiet = false;
		if (held != nullptr && bound.takes(*held)) {
			quiet = bound.write(object, *held);
		} else {
			reading::read_one_into(object, bound.setting, named, typed_in, machine);
		}
		if (!quiet) {
			if (ObjectDB::get_instance(pass->object_id) == nullptr || run.machine() == nullptr) {
				return;
			}
			// What that called may have bound other settings, or have asked for what was typed in.
			still_true = rows.ptr() == pass.ptr() && !by_name_alone && pass->still_say(named);
		}
	}
}
