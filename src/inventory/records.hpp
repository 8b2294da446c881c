#pragma once

// Records and tables of them, which the addon's scripts declare: which one a kind means, and its fields. Everything but finding one
// may run a game's code.

#include "action/kind_table.hpp"
#include "action/shared_verbs.hpp"

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>

using namespace godot;

// The settings by which a kind says which field of which record it means: five fields, said with one call of describe().
//
//	SCDataReach::describe<&Self::from, &Self::data, &Self::data_variable, &Self::node_path, &Self::field>(kind);
struct SCDataReach {
	SC_ENUM_LABELLED(From, "A Data File,A Variable,Data On A Node", A_DATA_FILE, A_VARIABLE, DATA_ON_A_NODE)

	template <auto FromField, auto Data, auto Variable, auto Path, auto Field, class T>
	static void describe(KindTable<T> &kind) {
		kind.template constants_of<From>();
		kind.template setting<FromField>(
				"from", "Where the record is: a file, a variable that holds one, such as the row that Find Row found, or the Data node under a node.");
		kind.template setting<Data>("data", hint::DATA, "The record, a Data file. It is shared by everything that uses the file.")
				.template only_if<FromField, A_DATA_FILE>();
		kind.template setting<Variable>("data_variable", "The variable that holds the record, such as the one that Find Row fills.")
				.template only_if<FromField, A_VARIABLE>();
		kind.template setting<Path>("node_path", "The node with the Data node under it. Empty is Self.").template only_if<FromField, DATA_ON_A_NODE>();
		kind.template setting<Field>("field", "The field, by the name that the Data Definition gives it, such as Damage.");
	}
};

namespace records {

bool is_record(const Object *object);
bool is_table(const Object *object);

// The record a kind means. Without one, `missing` says why and what to do, to go at the end of a sentence.
struct Meant {
	Ref<Resource> record;
	String missing;

	explicit operator bool() const { return record.is_valid(); }
};
Meant meant(SCMachineBase *machine, SCDataReach::From from, const Ref<Resource> &data, const StringName &variable, const NodePath &path);
template <class Kind, class Resource>
Meant meant(SCMachineBase *machine, const Resource *kind) {
	return meant(
			machine, setting_of<&Kind::from>(kind), setting_of<&Kind::data>(kind), setting_of<&Kind::data_variable>(kind), setting_of<&Kind::node_path>(kind));
}
// How it is named in a summary: by its own name, "[variable]", or the name of the node.
String in_line(SCDataReach::From from, const Ref<Resource> &data, const StringName &variable, const NodePath &path);
// The name of a record or a table in a summary, "(pick one)" for none.
String name_in_line(const Ref<Resource> &resource);
String shown_name(const Ref<Resource> &resource);

// Why it has no such field, to go at the end of a sentence; empty when it has.
String missing_field(const Ref<Resource> &record_or_table, const StringName &field);
Variant get_field(const Ref<Resource> &record, const StringName &field);
// Why it did not go in, to go at the end of a sentence; empty when it did.
String set_field(const Ref<Resource> &record, const StringName &field, const Variant &value);
// Why the field can never hold such a value; empty when it can.
String refusal(const Ref<Resource> &record, const StringName &field, const Variant &value);
// Which of the field's choices it is; below zero when it has none, or not that one.
int64_t place_among_choices(const Ref<Resource> &record, const StringName &field, const Variant &text);

} // namespace records
