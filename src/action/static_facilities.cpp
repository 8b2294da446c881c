#include "action/static_facilities.hpp"

#include "action/holders.hpp"
#include "action/inspector.hpp"
#include "action/kind_list.hpp"
#include "action/naming.hpp"
#include "action/places.hpp"
#include "action/reading.hpp"
#include "action/sc_action.hpp"
#include "action/sc_native_actions.hpp"
#include "action/summary_line.hpp"
#include "action/twins.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "machine_node/sc_machine.hpp"
#include "settings/class_rows.hpp"
#include "settings/editor_help.hpp"
#include "settings/object_arguments.hpp"
#include "settings/plumbing.hpp"
#include "settings/shown_names.hpp"
#include "steering/sight.hpp"

#include <godot_cpp/core/class_db.hpp>

namespace {

using object_arguments::guarded;

constexpr char ACTION[] = "SCMachineAction";
constexpr char CONDITION[] = "SCMachineCondition";

String doc_of(const StringName &class_name, const StringName &setting) {
	return ClassRows::shared().doc_of(class_name, setting);
}

// Inspector

bool is_plumbing_named(const Variant &property) {
	return is_plumbing(property.get_type() == Variant::DICTIONARY ? StringName(Dictionary(property).get("name", StringName())) : StringName(property));
}

void hide_from_panels(Dictionary property) {
	property["usage"] = int64_t(property.get("usage", 0)) & ~int64_t(PROPERTY_USAGE_EDITOR);
}

void show_as_any_type(Dictionary property) {
	property["usage"] = int64_t(property.get("usage", 0)) | int64_t(PROPERTY_USAGE_NIL_IS_VARIANT);
	property["type"] = int64_t(Variant::NIL);
}

bool shown_on_2d(Object *object) {
	return inspector::shown_on_2d(object);
}

void set_shown_on_2d(int64_t state) {
	ActionShared::get().shown_on_2d = state;
}

int64_t get_shown_on_2d() {
	return ActionShared::get().shown_on_2d;
}

bool shown_on_2d_known() {
	return ActionShared::get().shown_on_2d != -1;
}

bool is_a_base(const Ref<Script> &script) {
	return Kind::is_a_base(script);
}

int64_t starting_run_mode(const Variant &script) {
	return inspector::starting_run_mode(Kind::from(script));
}

bool holds_any_type(const Variant &script, const StringName &setting) {
	return inspector::holds_any_type(Kind::from(script), setting);
}

// Kinds and twins

Variant kind_of(Object *object) {
	return object != nullptr ? Kind::of(object).key() : Variant();
}

StringName kind_name(Object *object) {
	return Kind::of(object).name();
}

TypedArray<StringName> settings_with_twins(const Kind &kind) {
	return naming::array_from(twins::of(kind).settings);
}

TypedArray<StringName> can_be_read_from_a_variable(const Variant &script) {
	return settings_with_twins(Kind::from(script));
}

TypedArray<StringName> can_be_read_from_a_variable_of(Object *object) {
	return settings_with_twins(Kind::of(object));
}

TypedArray<Dictionary> described_twins(const Kind &kind) {
	TypedArray<Dictionary> described;
	for (const StringName &twin : twins::of(kind).twins) {
		described.push_back(dictionary_from(twins::describe(twin)));
	}
	return described;
}

TypedArray<Dictionary> twin_settings(const Variant &script) {
	return described_twins(Kind::from(script));
}

TypedArray<Dictionary> twin_settings_of(Object *object) {
	return described_twins(Kind::of(object));
}

StringName setting_behind_in(const Kind &kind, const StringName &property) {
	const StringName *setting = twins::of(kind).setting_of_twin.getptr(property);
	return setting != nullptr ? *setting : StringName();
}

StringName setting_behind(const Variant &script, const StringName &property) {
	return setting_behind_in(Kind::from(script), property);
}

StringName setting_behind_of(Object *object, const StringName &property) {
	return setting_behind_in(Kind::of(object), property);
}

Dictionary variables_behind(Object *object) {
	return twins::variables_behind(object);
}

// Naming

Array naming_settings(Object *object) {
	Array lists;
	if (object != nullptr) {
		const KindNames &names = naming::of_object(object);
		for (const LocalVector<StringName> *list : { &names.read, &names.written, &names.events, &names.event_lists }) {
			lists.push_back(naming::array_from(*list));
		}
	}
	return lists;
}

TypedArray<StringName> shown_settings(Object *object, const Array &settings) {
	return object != nullptr ? naming::array_from(naming::shown(object, naming::list_from(settings))) : TypedArray<StringName>();
}

PackedStringArray names_held_in(Object *object, const Array &settings) {
	return object != nullptr ? naming::names_held_in(object, naming::list_from(settings)) : PackedStringArray();
}

// Values. The machine is whatever is handed over: nothing is asked of what is no machine.

Variant item_in(SCMachineBase *machine, const StringName &variable) {
	return values::item_in(machine, variable);
}

// Places

bool has_a_place(Node *node) {
	return places::has_a_place(node);
}

Variant position_of(Node *node) {
	return places::position_of(node);
}

String no_place_words(Node *node, const String &setting) {
	return places::no_place_words(node, setting);
}

bool is_2d(Node *node) {
	return places::is_2d(node);
}

double pixels_per_metre() {
	return places::PIXELS_PER_METRE;
}

TypedArray<StringName> the_machines_own() {
	TypedArray<StringName> names;
	for (const StringName &name : ActionShared::get().the_machines_own) {
		names.push_back(name);
	}
	return names;
}

NodePath no_node() {
	return ActionShared::get().no_node;
}

String not_picked() {
	return ActionShared::get().not_picked;
}

// Helpers: the same by name, with whatever arguments a script hands over.

Variant argument(const Array &arguments, int64_t at) {
	return at < arguments.size() ? arguments[at] : Variant();
}

template <class T>
T *object_argument(const Array &arguments, int64_t at) {
	const Variant held = argument(arguments, at);
	return held.get_type() == Variant::OBJECT ? Object::cast_to<T>(held.get_validated_object()) : nullptr;
}

Variant help_number(const Array &arguments) {
	return words::number(values::as_number(argument(arguments, 0)));
}

Variant help_fill_in(const Array &arguments) {
	const Variant also = argument(arguments, 3);
	return words::fill_in(argument(arguments, 0).stringify(), object_argument<SCMachineBase>(arguments, 1), object_argument<Node>(arguments, 2),
			also.get_type() == Variant::DICTIONARY ? Dictionary(also) : Dictionary());
}

Variant help_shown_as(const Array &arguments) {
	const Variant how = argument(arguments, 1);
	return words::shown_as(argument(arguments, 0), how.get_type() == Variant::NIL ? String() : how.stringify());
}

Variant help_text_of(const Array &arguments) {
	return words::text_of(argument(arguments, 0));
}

// A method and the names of its arguments, bound to a class.
class Binder {
	const char *class_name;

public:
	explicit Binder(const char *to) : class_name(to) {}
	template <class Function, class... Defaults>
	void operator()(const MethodDefinition &definition, Function function, const Defaults &...defaults) const {
		ClassDB::bind_static_method(class_name, definition, function, defaults...);
	}
};

void bind_shared(const Binder &bind) {
	bind(D_METHOD("position_of", "node"), guarded<&position_of>("position_of"));
	bind(D_METHOD("is_2d", "node"), guarded<&is_2d>("is_2d"));
	bind(D_METHOD("distance_between", "a", "b"), guarded<&places::distance_between>("distance_between"));
	bind(D_METHOD("as_vector3", "value"), &places::as_vector3);
	bind(D_METHOD("as_vector2", "value"), &places::as_vector2);
	bind(D_METHOD("number_of", "m", "literal", "variable"), guarded<&values::number_of>("number_of"));
	bind(D_METHOD("value_of", "m", "literal", "variable"), guarded<&values::value_of>("value_of"));
	bind(D_METHOD("node_of", "m", "path"), guarded<&values::node_of>("node_of"));
	bind(D_METHOD("as_number", "value"), &values::as_number);
	bind(D_METHOD("as_truth", "value"), &values::as_truth);
	bind(D_METHOD("same_value", "a", "b"), &values::same_value);
	bind(D_METHOD("number", "value"), &words::number);
}

void bind_inspector(const Binder &bind) {
	bind(D_METHOD("doc_of", "class_name", "setting"), &doc_of, DEFVAL(StringName()));
	bind(D_METHOD("is_plumbing", "property"), &is_plumbing_named);
	bind(D_METHOD("hide_from_panels", "property"), &hide_from_panels);
	bind(D_METHOD("show_as_any_type", "property"), &show_as_any_type);
	bind(D_METHOD("shown_on_2d", "object"), guarded<&shown_on_2d>("shown_on_2d"));
	bind(D_METHOD("set_shown_on_2d", "state"), &set_shown_on_2d);
	bind(D_METHOD("get_shown_on_2d"), &get_shown_on_2d);
	bind(D_METHOD("shown_on_2d_known"), &shown_on_2d_known);
	bind(D_METHOD("_show_name", "resource", "name"), &shown_names::show);
	bind(D_METHOD("_help_of", "class_name"), &EditorHelp::xml_of);
	bind(D_METHOD("_is_a_base", "script"), &is_a_base);
	bind(D_METHOD("_starting_run_mode", "script"), &starting_run_mode);
}

void bind_kinds(const Binder &bind) {
	bind(D_METHOD("kind_of", "object"), guarded<&kind_of>("kind_of"));
	bind(D_METHOD("kind_name", "object"), guarded<&kind_name>("kind_name"));
	bind(D_METHOD("_core_kinds"), &kind_list::rows);
	bind(D_METHOD("_core_has_runtime", "action_or_condition"), guarded<&kind_list::has_runtime>("_core_has_runtime"));
	bind(D_METHOD("can_be_read_from_a_variable", "script"), &can_be_read_from_a_variable);
	bind(D_METHOD("can_be_read_from_a_variable_of", "object"), guarded<&can_be_read_from_a_variable_of>("can_be_read_from_a_variable_of"));
	bind(D_METHOD("twin_settings", "script"), &twin_settings);
	bind(D_METHOD("twin_settings_of", "object"), guarded<&twin_settings_of>("twin_settings_of"));
	bind(D_METHOD("setting_behind", "script", "property"), &setting_behind);
	bind(D_METHOD("setting_behind_of", "object", "property"), guarded<&setting_behind_of>("setting_behind_of"));
	bind(D_METHOD("variables_behind", "object"), guarded<&variables_behind>("variables_behind"));
	bind(D_METHOD("read_variables_into", "object", "named", "typed_in", "m"), guarded<&reading::read_variables_into>("read_variables_into"));
	bind(D_METHOD("holds_any_type", "script", "setting"), &holds_any_type);
	bind(D_METHOD("naming_settings", "object"), guarded<&naming_settings>("naming_settings"));
	bind(D_METHOD("shown_settings", "object", "settings"), guarded<&shown_settings>("shown_settings"));
	bind(D_METHOD("names_held_in", "object", "settings"), guarded<&names_held_in>("names_held_in"));
}

void bind_values(const Binder &bind) {
	bind(D_METHOD("keep_whole", "m", "variable", "answer"), guarded<&values::keep_whole>("keep_whole"));
	bind(D_METHOD("item_in", "m", "variable"), guarded<&item_in>("item_in"));
	bind(D_METHOD("path_to", "m", "held"), guarded<&values::path_to>("path_to"));
	bind(D_METHOD("can_fit", "typed_in", "held"), &values::can_fit);
	bind(D_METHOD("fitted_to", "typed_in", "held"), &values::fitted_to);
	bind(D_METHOD("kind_in_words", "value"), &values::kind_in_words);
	bind(D_METHOD("is_list", "value"), &values::is_list);
	bind(D_METHOD("_say_it_cannot_fit", "object", "setting", "variable", "held", "typed_in", "m"), guarded<&reading::say_it_cannot_fit>("_say_it_cannot_fit"));
	bind(D_METHOD("_no_such_variable", "m", "variable"), guarded<&values::say_no_such_variable>("_no_such_variable"));
}

void bind_places(const Binder &bind) {
	bind(D_METHOD("set_position_of", "node", "place"), guarded<&places::set_position_of>("set_position_of"));
	bind(D_METHOD("has_a_place", "node"), guarded<&has_a_place>("has_a_place"));
	bind(D_METHOD("no_place_words", "node", "setting"), guarded<&no_place_words>("no_place_words"));
	bind(D_METHOD("pixels_per_metre"), &pixels_per_metre);
	bind(D_METHOD("starts_in_2d"), &places::starts_in_2d);
	bind(D_METHOD("suit_settings_2d", "object"), guarded<&places::suit_settings_2d>("suit_settings_2d"));
	bind(D_METHOD("the_machines_own"), &the_machines_own);
	bind(D_METHOD("no_node"), &no_node);
	bind(D_METHOD("not_picked"), &not_picked);
}

void bind_words(const Binder &bind) {
	bind(D_METHOD("shown_line", "object"), guarded<&summary_line::shown_line>("shown_line"));
	bind(D_METHOD("has_a_hole", "line"), &summary_line::has_a_hole);
	bind(D_METHOD("summary_with_variables", "object", "said"), guarded<&summary_line::with_variables>("summary_with_variables"));
	bind(D_METHOD("_line_marked", "object", "setting", "number"), guarded<&summary_line::line_marked>("_line_marked"));
	bind(D_METHOD("_yes_or_no_that_changed", "said", "marked", "name"), &summary_line::yes_or_no_that_changed);
	bind(D_METHOD("_choices_of", "object", "setting"), guarded<&summary_line::choices_of>("_choices_of"));
	bind(D_METHOD("_marker_named", "line", "number", "name"), &summary_line::marker_named);
	bind(D_METHOD("_has_setting", "object", "setting"), guarded<&summary_line::has_setting>("_has_setting"));
	bind(D_METHOD("_marker_for", "like", "number"), &summary_line::marker_for);
	bind(D_METHOD("_swap_the_part_that_changed", "said", "marked", "name"), &summary_line::swap_the_part_that_changed);
	bind(D_METHOD("_part_that_changed", "said", "marked", "name"), &summary_line::part_that_changed);
	bind(D_METHOD("shown_as", "value", "how"), &words::shown_as);
	bind(D_METHOD("text_of", "value"), &words::text_of);
	bind(D_METHOD("fill_in", "line", "m", "target", "also"), guarded<&words::fill_in>("fill_in"), DEFVAL(Variant()), DEFVAL(Dictionary()));
	bind(D_METHOD("names_in", "words"), &words::names_in);
	bind(D_METHOD("name_in_line", "path", "Self", "otherwise"), &words::name_in_line, DEFVAL("Self"), DEFVAL("Self"));
	bind(D_METHOD("property_in_line", "property"), &words::property_in_line);
}

// The node that is to get a child.
Variant help_takes_children_now(const Array &arguments) {
	const Node *parent = arguments.size() == 1 ? Object::cast_to<Node>(arguments[0].get_validated_object()) : nullptr;
	return parent != nullptr && SCMachine::takes_children_now(parent);
}

Variant help_held_properties(const Array &) {
	return holders::all_held();
}

} // namespace

void static_facilities::bind_to_action() {
	const Binder bind(ACTION);
	bind_shared(bind);
	bind_inspector(bind);
	bind_kinds(bind);
	bind_values(bind);
	bind_places(bind);
	bind_words(bind);
}

void static_facilities::bind_to_condition() {
	bind_shared(Binder(CONDITION));
}

void static_facilities::add_helpers() {
	SCNativeActions::add_helper("number", &help_number);
	SCNativeActions::add_helper("fill_in", &help_fill_in);
	SCNativeActions::add_helper("shown_as", &help_shown_as);
	SCNativeActions::add_helper("text_of", &help_text_of);
	SCNativeActions::add_helper("held_properties", &help_held_properties);
	SCNativeActions::add_helper("takes_children_now", &help_takes_children_now);
	sight::add_helpers();
}
