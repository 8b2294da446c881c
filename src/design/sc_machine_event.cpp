#include "design/sc_machine_event.hpp"

#include "settings/plumbing.hpp"
#include "settings/shown_names.hpp"

#include <iterator>

namespace {

constexpr const char *VALUE_WORDS[] = { "Nothing", "float", "bool", "String", "Vector2 or Vector3", "Node", "Array", "Color", "Variant", "Resource" };
constexpr const char *VARIABLE_KINDS[] = { "", "number", "bool", "text", "vector", "node", "list", "colour", "", "resource" };

template <size_t N>
String word_at(const char *const (&words)[N], int64_t index) {
	return index >= 0 && index < int64_t(N) ? String(words[index]) : String();
}

} // namespace

void SCMachineEvent::set_carries(int64_t kind) {
	carries = Carries(kind);
	notify_property_list_changed();
}

String SCMachineEvent::value_label() const {
	const String named = data_name.strip_edges();
	return named.is_empty() ? word_at(VALUE_WORDS, carries) : named;
}

String SCMachineEvent::kind_of_carries(int64_t kind) {
	return word_at(VARIABLE_KINDS, kind);
}

String SCMachineEvent::_to_string() const {
	return event_name.is_empty() ? String("Event") : String(event_name);
}

void SCMachineEvent::_validate_property(PropertyInfo &property) const {
	shown_names::leave_out_of_files(this, property);
	const bool tells_of_data = property.name == StringName("data_name") || property.name == StringName("data_description");
	if (is_plumbing(property.name) || (tells_of_data && carries == NOTHING)) {
		hide_from_inspector(property);
	} else if (property.name == StringName("carries")) {
		PackedStringArray words;
		for (const char *word : VALUE_WORDS) {
			words.push_back(word);
		}
		property.hint_string = String(",").join(words);
	}
}

void SCMachineEvent::_bind_methods() {
	ClassTable<SCMachineEvent> table(
			"A declared event. Events themselves are only names; declaring one says what it means, what it carries and whether every machine hears it.");
	table.constants_of<Carries>();
	table.setting<&SCMachineEvent::event_name>("event_name", "Exact name under which it is sent and awaited.");
	table.setting<&SCMachineEvent::description>("description", hint::MULTILINE, "What the event means.");
	table.setting<&SCMachineEvent::is_global>("is_global", "Every machine in the game hears it, whoever sends it.");
	table.property(
			"carries", table.enum_info<Carries>("carries"), &SCMachineEvent::set_carries, &SCMachineEvent::get_carries, "The kind of value the event carries.");
	table.setting<&SCMachineEvent::data_name>("data_name", "What the value is called, for example Points.");
	table.setting<&SCMachineEvent::data_description>("data_description", hint::MULTILINE, "What the value means.");
	ClassDB::bind_method(D_METHOD("value_label"), &SCMachineEvent::value_label);
	ClassDB::bind_static_method("SCMachineEvent", D_METHOD("kind_of_carries", "carries"), &SCMachineEvent::kind_of_carries);
}
