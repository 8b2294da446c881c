#include "kinds/node/arguments.hpp"

#include "action/values.hpp"
#include "kinds/node/node_types.hpp"
#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/classes/class_db_singleton.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace arguments {

namespace {

int64_t flags_of(const Dictionary &described) {
	return described.get("flags", 0);
}

property_paths::Wanted wanted_by(const Dictionary &argument) {
	property_paths::Wanted wanted;
	wanted.is_there = true;
	wanted.type = Variant::Type(int64_t(argument.get("type", Variant::NIL)));
	wanted.class_name = argument.get("class_name", StringName());
	return wanted;
}

String counted(int64_t count) {
	return count == 0 ? String("no value") : count == 1 ? String("1 value") : vformat("%d values", count);
}

// A class of a script is not looked at by property_paths::fit().
bool is_of_the_script(const property_paths::Wanted &wanted, const Variant &fitted) {
	const Object *object = wanted.type == Variant::OBJECT ? fitted.get_validated_object() : nullptr;
	const StringName &type = wanted.class_name;
	if (object == nullptr || type.is_empty() || ClassDBSingleton::get_singleton()->class_exists(type) || !node_types::is_known(type)) {
		return true;
	}
	return node_types::is_a(object, type);
}

bool fit_one(SCMachineBase *machine, const property_paths::Wanted &wanted, Variant &value) {
	Variant meant = value;
	// A path is how a node is typed in.
	if (wanted.type == Variant::OBJECT && value.get_type() == Variant::NODE_PATH) {
		meant = values::node_of(machine, value);
	}
	Variant fitted;
	if (!property_paths::fit(wanted, meant, machine, fitted) || !is_of_the_script(wanted, fitted)) {
		return false;
	}
	value = fitted;
	return true;
}

} // namespace

Dictionary described_in(const TypedArray<Dictionary> &list, const StringName &name) {
	for (int64_t i = 0; i < list.size(); i++) {
		const Dictionary described = list[i];
		if (StringName(described.get("name", StringName())) == name) {
			return described;
		}
	}
	return Dictionary();
}

bool is_static(const Dictionary &described) {
	return (flags_of(described) & METHOD_FLAG_STATIC) != 0;
}

bool gives_something(const Dictionary &described) {
	const Dictionary answer = described.get("return", Dictionary());
	const int64_t usage = answer.get("usage", int64_t(PROPERTY_USAGE_NIL_IS_VARIANT));
	return int64_t(answer.get("type", Variant::NIL)) != Variant::NIL || (usage & PROPERTY_USAGE_NIL_IS_VARIANT) != 0;
}

bool is_set(const SCMachineAction *action, const StringName &setting, const Variant &held) {
	return held.get_type() != Variant::NIL || !String(action->from_variables.get(setting, StringName())).is_empty();
}

String fit(SCMachineBase *machine, const Dictionary &described, Array &given, bool exactly) {
	const Array takes = described.get("args", Array());
	const Array defaults = described.get("default_args", Array());
	const int64_t needed = exactly ? takes.size() : takes.size() - defaults.size();
	const bool takes_more = (flags_of(described) & METHOD_FLAG_VARARG) != 0;
	if (needed > MOST) {
		return vformat("it needs %s and only %d can be handed over", counted(needed), MOST);
	}
	if (given.size() > takes.size() && !takes_more) {
		return vformat("it takes %s and was given %d", counted(takes.size()), given.size());
	}
	for (int64_t i = 0; i < MAX(needed, given.size()); i++) {
		const property_paths::Wanted wanted = i < takes.size() ? wanted_by(takes[i]) : property_paths::Wanted();
		if (i >= given.size()) {
			if (wanted.type != Variant::NIL && wanted.type != Variant::OBJECT) {
				return vformat("it needs %s and was given %d", counted(needed), given.size());
			}
			given.push_back(Variant());
		}
		Variant value = given[i];
		if (!fit_one(machine, wanted, value)) {
			const String name = Dictionary(takes[i]).get("name", String());
			return vformat("its value %d, %s, has to be %s and is %s", i + 1, name, property_paths::in_words(wanted), values::kind_in_words(given[i]));
		}
		given[i] = value;
	}
	return String();
}

String call(Object *on, const StringName &method, const Array &given, Variant &answer) {
	LocalVector<Variant> values_given;
	LocalVector<const Variant *> pointers;
	for (int64_t i = 0; i < given.size(); i++) {
		values_given.push_back(given[i]);
	}
	for (const Variant &value : values_given) {
		pointers.push_back(&value);
	}
	GDExtensionCallError error = {};
	Variant called = on;
	called.callp(method, pointers.ptr(), int(pointers.size()), answer, error);
	switch (error.error) {
		case GDEXTENSION_CALL_OK:
			return String();
		case GDEXTENSION_CALL_ERROR_INVALID_METHOD:
			return "it is not there";
		case GDEXTENSION_CALL_ERROR_INVALID_ARGUMENT:
			if (error.argument >= 0 && error.argument < given.size()) {
				return vformat("its value %d cannot be %s", error.argument + 1, values::kind_in_words(given[error.argument]));
			}
			return "it does not take these values";
		case GDEXTENSION_CALL_ERROR_TOO_MANY_ARGUMENTS:
			return vformat("it takes %s and was given %d", counted(error.expected), given.size());
		case GDEXTENSION_CALL_ERROR_TOO_FEW_ARGUMENTS:
			return vformat("it needs %s and was given %d", counted(error.expected), given.size());
		default:
			return "it cannot be called";
	}
}

} // namespace arguments
