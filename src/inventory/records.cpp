#include "inventory/records.hpp"

#include "action/told_path.hpp"
#include "machine/native_names.hpp"

namespace records {

namespace {

struct RecordNames {
	StringName record = "data";
	StringName table = "data_table";
	StringName script = "quillstead_data";
	StringName node_on = "node_on";
	StringName data = "data";
	StringName get_field = "get_field";
	StringName set_field = "set_field";
	StringName missing = "missing";
	StringName refusal = "refusal";
	StringName place_among_choices = "place_among_choices";
	StringName shown_name = "shown_name";
};

const RecordNames &names() {
	return NativeNames::of<RecordNames>();
}

Ref<Resource> as_record(const Variant &held) {
	const Ref<Resource> resource = Object::cast_to<Resource>(held.get_validated_object());
	return is_record(resource.ptr()) ? resource : Ref<Resource>();
}

Meant in_variable(SCMachineBase *machine, const StringName &variable) {
	if (variable.is_empty()) {
		return { Ref<Resource>(), "no variable is picked. Pick the one that holds the record under Data Variable" };
	}
	if (!machine->has_value(variable)) {
		return { Ref<Resource>(), vformat("there is no variable called %s. Add it under Variables, or pick another under Data Variable", variable) };
	}
	const Variant held = machine->get_value(variable);
	const Ref<Resource> record = as_record(held);
	if (record.is_valid()) {
		return { record, String() };
	}
	return { record, vformat("the variable %s holds %s, not a record. Put one into it, with Find Row or Set Variable", variable, values::kind_in_words(held)) };
}

Meant on_node(SCMachineBase *machine, const NodePath &path) {
	Node *node = values::node_of(machine, path);
	if (node == nullptr) {
		const String what = path.is_empty() ? String("the Machine has no node to work on") : vformat("there is no node at %s", words::told_path(path));
		return { Ref<Resource>(), vformat("%s. Pick one under Node Path", what) };
	}
	const String name = node->get_name();
	const Variant found = CompanionScripts::call(names().script, names().node_on, Array::make(node));
	const Object *data_node = found.get_validated_object();
	if (data_node == nullptr) {
		return { Ref<Resource>(), vformat("%s has no Data node under it. Add one, and pick its record under Data", name) };
	}
	const Ref<Resource> record = as_record(data_node->get(names().data));
	return { record, record.is_valid() ? String() : vformat("the Data node of %s has no record. Pick one under Data, or make one there", name) };
}

} // namespace

bool is_record(const Object *object) {
	return CompanionScripts::is_one(object, names().record);
}

bool is_table(const Object *object) {
	return CompanionScripts::is_one(object, names().table);
}

Meant meant(SCMachineBase *machine, SCDataReach::From from, const Ref<Resource> &data, const StringName &variable, const NodePath &path) {
	if (from == SCDataReach::A_VARIABLE) {
		return in_variable(machine, variable);
	}
	if (from == SCDataReach::DATA_ON_A_NODE) {
		return on_node(machine, path);
	}
	if (data.is_null()) {
		return { data, "no record is picked. Pick one under Data" };
	}
	if (!is_record(data.ptr())) {
		return { Ref<Resource>(), vformat("what is picked under Data is %s without fields. Pick a Data file", values::kind_in_words(data)) };
	}
	return { data, String() };
}

String in_line(SCDataReach::From from, const Ref<Resource> &data, const StringName &variable, const NodePath &path) {
	if (from == SCDataReach::A_VARIABLE) {
		return words::variable_or(variable, "(pick one)");
	}
	return from == SCDataReach::DATA_ON_A_NODE ? words::name_in_line(path) : name_in_line(data);
}

String name_in_line(const Ref<Resource> &resource) {
	return resource.is_valid() ? shown_name(resource) : String("(pick one)");
}

String shown_name(const Ref<Resource> &resource) {
	return is_record(resource.ptr()) || is_table(resource.ptr()) ? String(resource->call(names().shown_name)) : words::text_of(resource);
}

String missing_field(const Ref<Resource> &record_or_table, const StringName &field) {
	return String(record_or_table->call(names().missing, field));
}

Variant get_field(const Ref<Resource> &record, const StringName &field) {
	return CompanionScripts::call(names().script, names().get_field, Array::make(record, field));
}

String set_field(const Ref<Resource> &record, const StringName &field, const Variant &value) {
	return String(CompanionScripts::call(names().script, names().set_field, Array::make(record, field, value)));
}

String refusal(const Ref<Resource> &record, const StringName &field, const Variant &value) {
	return String(record->call(names().refusal, field, value));
}

int64_t place_among_choices(const Ref<Resource> &record, const StringName &field, const Variant &text) {
	const Variant place = record->call(names().place_among_choices, field, text);
	return place.get_type() == Variant::INT ? int64_t(place) : -1;
}

} // namespace records
