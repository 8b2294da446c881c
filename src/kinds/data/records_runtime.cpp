// The compiled runtimes of the kinds that read and write the fields of a record.

#include "action/add_kind.hpp"
#include "action/own_value.hpp"
#include "action/runtime_shapes.hpp"
#include "action/settings_in_use.hpp"
#include "kinds/data/records.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/core/math.hpp>

namespace {

class GetData : public OnceOrRepeating<GetData> {
	using Kind = SCGetDataAction;

	// What the variable held of a field that is not there goes.
	static void nothing_read(SCMachineBase *machine, SCMachineAction *action, const String &why) {
		verbs::warn(machine, action, vformat("nothing was read, because %s.", why));
		verbs::let_go(machine, setting_of<&Kind::store_in>(action));
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StringName variable = setting_of<&Kind::store_in>(action);
		if (variable.is_empty()) {
			verbs::warn_whole(
					machine, action, 0, vformat("Get Data on %s has no variable to put the field in. Pick one beside Store In.", machine->name_in_messages()));
			return;
		}
		const StringName field = setting_of<&Kind::field>(action);
		const StillHere here(machine);
		const records::Meant meant = records::meant<Kind>(machine, action);
		if (!here) {
			return;
		}
		if (!meant || field.is_empty()) {
			nothing_read(machine, action, meant ? String("no field is picked. Pick one under Field") : meant.missing);
			return;
		}
		const String missing = records::missing_field(meant.record, field);
		const Variant held = missing.is_empty() && here ? records::get_field(meant.record, field) : Variant();
		if (!here) {
			return;
		}
		if (!missing.is_empty()) {
			nothing_read(machine, action, missing);
		} else {
			verbs::keep<&Kind::store_in>(machine, action, held, "the field");
		}
	}
};

class SetData : public OnceOrRepeating<SetData> {
	using Kind = SCSetDataAction;

	static void not_changed(SCMachineBase *machine, SCMachineAction *action, const StringName &field, const String &why) {
		verbs::warn_whole(machine, action, Kind::NOT_CHANGED, vformat("Set Data on %s did not change %s: %s.", machine->name_in_messages(), field, why));
	}

	static Variant sum_of(const Variant &first, const Variant &second) {
		if (first.get_type() == Variant::INT && second.get_type() == Variant::INT) {
			return int64_t(uint64_t(int64_t(first)) + uint64_t(int64_t(second)));
		}
		return values::as_number(first) + values::as_number(second);
	}

	// False, and the game maker told, when there is nothing to add to or to be added.
	static bool add_up(SCMachineBase *machine, SCMachineAction *action, const StringName &field, const Variant &held, Variant &value) {
		if (!values::is_number(held)) {
			verbs::warn_whole(machine, action, Kind::NO_NUMBER,
					vformat("Set Data on %s adds to %s, which holds %s, not a number. Use Set for a field that is not a number.", machine->name_in_messages(),
							field, values::kind_in_words(held)));
			return false;
		}
		if (!values::is_number(value)) {
			not_changed(machine, action, field, vformat("Value holds %s, not a number to add", values::kind_in_words(value)));
			return false;
		}
		value = sum_of(held, value);
		if (held.get_type() == Variant::INT && value.get_type() == Variant::FLOAT && double(value) != Math::round(double(value))) {
			verbs::warn(machine, action,
					vformat("%s is an Int, so the sum is rounded to a whole number. Make it a Float in the Data Definition to keep fractions.", field));
		}
		return true;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StringName field = setting_of<&Kind::field>(action);
		if (field.is_empty()) {
			verbs::warn(machine, action, "no field is picked, so nothing was changed. Pick one under Field.");
			return;
		}
		const bool adds = setting_of<&Kind::operation>(action) == Kind::ADD;
		Variant value = contents::own_value<&Kind::value>(action);
		const StillHere here(machine);
		const records::Meant meant = records::meant<Kind>(machine, action);
		if (!here) {
			return;
		}
		const String missing = meant ? records::missing_field(meant.record, field) : meant.missing;
		if (here && !missing.is_empty()) {
			not_changed(machine, action, field, missing);
			return;
		}
		const Variant held = adds && here ? records::get_field(meant.record, field) : Variant();
		if (!here || (adds && !add_up(machine, action, field, held, value)) || !here) {
			return;
		}
		const String refused = records::set_field(meant.record, field, value);
		if (here && !refused.is_empty()) {
			not_changed(machine, action, field, refused);
		}
	}
};

const AddKinds added = {
	add_kind<SCGetDataAction, GetData>(),
	add_kind<SCSetDataAction, SetData>(),
};

} // namespace
