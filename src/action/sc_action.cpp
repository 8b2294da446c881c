#include "action/sc_action.hpp"

#include "action/inspector.hpp"
#include "action/naming.hpp"
#include "action/places.hpp"
#include "action/sc_native_actions.hpp"
#include "action/script_operations.hpp"
#include "action/static_facilities.hpp"
#include "action/summary_line.hpp"
#include "action/twins.hpp"
#include "action/words.hpp"
#include "machine/machine_run.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/script.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace {

SCMachine *as_machine(SCMachineBase *machine) {
	return Object::cast_to<SCMachine>(machine);
}

const NativeEntry *runtime_of(const SCMachineAction *action) {
	const ClassRow *row = action->class_row();
	return row != nullptr ? SCNativeActions::of_word(row->word) : nullptr;
}

} // namespace

void SCMachineAction::enter(SCMachineBase *machine, int index) {
	if (!GDVIRTUAL_CALL(_enter, as_machine(machine), index)) {
		enter_default(machine, index);
	}
}

void SCMachineAction::update(SCMachineBase *machine, int index, double delta) {
	if (!GDVIRTUAL_CALL(_update, as_machine(machine), index, delta)) {
		update_default(machine, index, delta);
	}
}

void SCMachineAction::exit(SCMachineBase *machine, int index) {
	if (!GDVIRTUAL_CALL(_exit, as_machine(machine), index)) {
		exit_default(machine, index);
	}
}

String SCMachineAction::summary() {
	String answer;
	return GDVIRTUAL_CALL(_summary, answer) ? answer : summary_default();
}

bool SCMachineAction::wants_physics() {
	bool answer = false;
	return GDVIRTUAL_CALL(_wants_physics, answer) ? answer : wants_physics_default();
}

bool SCMachineAction::ask_uses_run_mode() {
	bool answer = false;
	return GDVIRTUAL_CALL(_uses_run_mode, answer) ? answer : uses_run_mode_default();
}

bool SCMachineAction::finishes_as_it_starts() {
	bool answer = false;
	return GDVIRTUAL_CALL(_finishes_as_it_starts, answer) ? answer : finishes_as_it_starts_default();
}

bool SCMachineAction::works_after_finishing() {
	bool answer = false;
	return GDVIRTUAL_CALL(_works_after_finishing, answer) ? answer : works_after_finishing_default();
}

bool SCMachineAction::needs_every_tick() {
	bool answer = false;
	return GDVIRTUAL_CALL(_needs_every_tick, answer) ? answer : needs_every_tick_default();
}

String SCMachineAction::holds_its_state() {
	String answer;
	return GDVIRTUAL_CALL(_holds_its_state, answer) ? answer : holds_its_state_default();
}

bool SCMachineAction::ask_repeats() {
	bool answer = false;
	return GDVIRTUAL_CALL(_repeats, answer) ? answer : repeats_default();
}

PackedStringArray SCMachineAction::variables_to_watch() {
	PackedStringArray answer;
	return GDVIRTUAL_CALL(_variables_to_watch, answer) ? answer : variables_to_watch_default();
}

PackedStringArray SCMachineAction::variables_read() {
	PackedStringArray answer;
	return GDVIRTUAL_CALL(_variables_read, answer) ? answer : variables_read_default();
}

PackedStringArray SCMachineAction::variables_written() {
	PackedStringArray answer;
	return GDVIRTUAL_CALL(_variables_written, answer) ? answer : variables_written_default();
}

PackedStringArray SCMachineAction::events_sent() {
	PackedStringArray answer;
	return GDVIRTUAL_CALL(_events_sent, answer) ? answer : events_sent_default();
}

TypedArray<StringName> SCMachineAction::optional_names() {
	Array answer;
	return GDVIRTUAL_CALL(_optional_names, answer) ? naming::array_from(naming::list_from(answer)) : optional_names_default();
}

void SCMachineAction::suit_2d() {
	if (!GDVIRTUAL_CALL(_suit_2d)) {
		suit_2d_default();
	}
}

void SCMachineAction::read_variables(SCMachineBase *machine) {
	if (kind_alone || !GDVIRTUAL_CALL(_read_variables, as_machine(machine))) {
		read_variables_default(machine);
	}
}

// Reading may call user code, which may leave the state and free the machine.
bool SCMachineAction::read_variables_first(SCMachineBase *machine) {
	if (!reads_variables()) {
		return true;
	}
	const Ref<SCMachineAction> held(this);
	MachineRun &run = machine->run();
	MachineRun::Busy keep(run);
	const RunRow *row = run.row_being_run();
	read_variables(machine);
	return run.machine() != nullptr && (row == nullptr || row->live);
}

template <auto Operation, bool ReadsFirst, class... Arguments>
void SCMachineAction::for_script(const Variant &m, Arguments... arguments) {
	SCMachineBase *machine = script_operations::machine_or_error<Operation>(m);
	if (machine != nullptr && (!ReadsFirst || read_variables_first(machine))) {
		const Ref<SCMachineAction> held(this);
		(this->*Operation)(machine, arguments...);
	}
}

String SCMachineAction::live_words(SCMachineBase *machine, const String &line) {
	String answer;
	return GDVIRTUAL_CALL(_live_words, as_machine(machine), line, answer) ? answer : live_words_default(machine, line);
}

void SCMachineAction::enter_default(SCMachineBase *machine, int index) {
	if (const NativeEntry *entry = runtime_of(this)) {
		entry->runtime->enter(machine, this, index);
	}
}

void SCMachineAction::update_default(SCMachineBase *machine, int index, double delta) {
	const NativeEntry *entry = runtime_of(this);
	if (entry != nullptr && entry->has_update) {
		entry->runtime->update(machine, this, index, delta);
	}
}

void SCMachineAction::exit_default(SCMachineBase *machine, int index) {
	const NativeEntry *entry = runtime_of(this);
	if (entry != nullptr && entry->has_exit) {
		entry->runtime->exit(machine, this, index);
	}
}

String SCMachineAction::summary_default() {
	return to_string();
}

bool SCMachineAction::wants_physics_default() {
	const ClassRow *row = class_row();
	return row != nullptr && row->wants_physics;
}

bool SCMachineAction::uses_run_mode_default() {
	const ClassRow *row = class_row();
	return row == nullptr || row->runs == Runs::AS_IT_SAYS || row->runs == Runs::ONCE_OR_REPEATING;
}

bool SCMachineAction::finishes_as_it_starts_default() {
	const ClassRow *row = class_row();
	switch (row != nullptr ? row->runs : Runs::AS_IT_SAYS) {
		case Runs::AS_IT_SAYS:
			return false;
		case Runs::ONCE_OR_REPEATING:
			return !repeats();
		case Runs::AT_ONCE:
		case Runs::ON_AND_ON:
			return true;
		case Runs::FOR_A_WHILE:
			break;
	}
	return !row->takes_time_if.is_empty() && !setting_rules::any_holds(row->takes_time_if, this);
}

bool SCMachineAction::works_after_finishing_default() {
	const ClassRow *row = class_row();
	switch (row != nullptr ? row->runs : Runs::AS_IT_SAYS) {
		case Runs::AT_ONCE:
		case Runs::FOR_A_WHILE:
			return false;
		default:
			return !uses_run_mode() || repeats();
	}
}

bool SCMachineAction::needs_every_tick_default() {
	return true;
}

String SCMachineAction::holds_its_state_default() {
	return String();
}

PackedStringArray SCMachineAction::variables_to_watch_default() {
	return PackedStringArray();
}

PackedStringArray SCMachineAction::variables_read_default() {
	return naming::variables_read(this);
}

PackedStringArray SCMachineAction::variables_written_default() {
	return naming::variables_written(this);
}

PackedStringArray SCMachineAction::events_sent_default() {
	return naming::events_sent(this);
}

TypedArray<StringName> SCMachineAction::optional_names_default() {
	TypedArray<StringName> names;
	for (const ClassRow *row = class_row(); row != nullptr; row = row->parent) {
		for (const SettingRow *setting : row->settings) {
			if (setting->optional && setting_rules::all_hold(setting->optional_if, this)) {
				names.push_back(setting->info.name);
			}
		}
	}
	return names;
}

void SCMachineAction::suit_2d_default() {
	places::suit_settings_2d(this);
}

void SCMachineAction::read_variables_default(SCMachineBase *machine) {
	bound_settings.read_into(this, from_variables, typed_in, machine);
}

String SCMachineAction::live_words_default(SCMachineBase *machine, const String &line) {
	if (machine == nullptr) {
		return String();
	}
	PackedStringArray words_of_each;
	const TypedArray<StringName> names = variables_used();
	for (int64_t i = 0; i < names.size(); i++) {
		const StringName name = names[i];
		if (machine->has_value(name)) {
			words_of_each.push_back(vformat("%s = %s", name, words::text_of(machine->get_value(name))));
		}
	}
	const String values = String(", ").join(words_of_each);
	return line.is_empty() || values.is_empty() ? line + values : line + String("  ") + values;
}

bool SCMachineAction::has_enter() {
	return GDVIRTUAL_IS_OVERRIDDEN(_enter) || runtime_of(this) != nullptr;
}

bool SCMachineAction::has_update() {
	const NativeEntry *entry = runtime_of(this);
	return GDVIRTUAL_IS_OVERRIDDEN(_update) || (entry != nullptr && entry->has_update);
}

bool SCMachineAction::has_exit() {
	const NativeEntry *entry = runtime_of(this);
	return GDVIRTUAL_IS_OVERRIDDEN(_exit) || (entry != nullptr && entry->has_exit);
}

bool SCMachineAction::is_typed_in(const StringName &setting) const {
	return StringName(from_variables.get(setting, StringName())).is_empty();
}

String SCMachineAction::shown_summary() {
	return summary_line::shown_line(this);
}

// In the editor the settings change all the time.
TypedArray<StringName> SCMachineAction::variables_used() {
	if (!used_known || Engine::get_singleton()->is_editor_hint()) {
		used = naming::variables_used(this);
		used_known = true;
	}
	return used;
}

void SCMachineAction::validate_setting(Dictionary property) const {
	inspector::validate(this, property);
}

bool SCMachineAction::_get(const StringName &name, Variant &value) const {
	if (name == ActionShared::get().run_mode_saved) {
		value = int64_t(run_mode);
		return true;
	}
	return twins::get(this, name, value);
}

// A file of a script-based action sets its properties before the script is attached, and attaching
// it would put the script's own starting run mode back: what the file said is put on once more then.
bool SCMachineAction::_set(const StringName &name, const Variant &value) {
	const ActionShared &shared = ActionShared::get();
	if (name != shared.run_mode_saved) {
		return twins::set(this, name, value);
	}
	run_mode = RunMode(CLAMP(int(value), int(ONCE), int(EVERY_FRAME)));
	if (Ref<Script>(get_script()).is_null() && StringName(get_class()) == shared.action_base) {
		pending_run_mode = run_mode;
		const Callable reapply = callable_mp(this, &SCMachineAction::reapply_run_mode);
		if (!is_connected(shared.script_changed, reapply)) {
			connect(shared.script_changed, reapply, CONNECT_ONE_SHOT);
		}
	}
	return true;
}

void SCMachineAction::reapply_run_mode() {
	if (pending_run_mode >= 0) {
		run_mode = RunMode(pending_run_mode);
		pending_run_mode = -1;
	}
}

void SCMachineAction::_get_property_list(List<PropertyInfo> *list) const {
	list->push_back(PropertyInfo(Variant::INT, ActionShared::get().run_mode_saved, PROPERTY_HINT_NONE, "", PROPERTY_USAGE_STORAGE));
	twins::list(this, list);
}

void SCMachineAction::_validate_property(PropertyInfo &property) const {
	inspector::validate(this, property);
}

void SCMachineAction::_bind_methods() {
	ClassTable<SCMachineAction> table("One thing a state does. Actions run top to bottom while their state is active.");
	table.constants_of<RunMode>();
	table.setting<&SCMachineAction::run_mode>("run_mode", { PROPERTY_HINT_ENUM, "Once,Every Frame" },
			"Once does the work when the state is entered. Every Frame does it over and over while the state is active.");
	table.setting<&SCMachineAction::update_interval>(
			"update_interval", { PROPERTY_HINT_RANGE, "0,10,0.001,or_greater,suffix:s,hide_slider" }, "Seconds between repeats. Zero repeats every frame.");
	table.setting<&SCMachineAction::wait_for_previous>("wait_for_previous", "Only run once the action above this one in the list has finished.");
	table.setting<&SCMachineAction::disabled>("disabled", "Skip this action without deleting it.");
	table.setting<&SCMachineAction::display_name>("display_name", "The name on the state's list of actions. Empty uses the action's type.");
	table.property("from_variables",
			PropertyInfo(Variant::DICTIONARY, "from_variables", PROPERTY_HINT_DICTIONARY_TYPE, "StringName;StringName", PROPERTY_USAGE_STORAGE),
			&SCMachineAction::set_from_variables, &SCMachineAction::get_from_variables,
			"Which settings are read from a variable of the machine, and from which: setting name to variable name.");
	ClassDB::bind_method(D_METHOD("get_typed_in"), &SCMachineAction::get_typed_in);
	ClassDB::add_property("SCMachineAction", PropertyInfo(Variant::DICTIONARY, "_typed_in", PROPERTY_HINT_NONE, "", PROPERTY_USAGE_NONE), "", "get_typed_in");

	bind_operations();
	bind_defaults();
	ClassDB::bind_method(D_METHOD("is_typed_in", "setting"), &SCMachineAction::is_typed_in);
	ClassDB::bind_method(D_METHOD("shown_summary"), &SCMachineAction::shown_summary);
	ClassDB::bind_method(D_METHOD("variables_used"), &SCMachineAction::variables_used);
	ClassDB::bind_method(D_METHOD("validate_setting", "property"), &SCMachineAction::validate_setting);
	ClassDB::bind_method(D_METHOD("has_enter"), &SCMachineAction::has_enter);
	ClassDB::bind_method(D_METHOD("has_update"), &SCMachineAction::has_update);
	ClassDB::bind_method(D_METHOD("has_exit"), &SCMachineAction::has_exit);
	static_facilities::bind_to_action();
	setting_edits::in_editor = Engine::get_singleton()->is_editor_hint();
	setting_rules::is_read_from_a_variable = &twins::is_read_from_a_variable;
}

void SCMachineAction::bind_operations() {
	ClassDB::bind_method(
			script_operations::named<&SCMachineAction::enter>("enter", "m", "index"), &SCMachineAction::for_script<&SCMachineAction::enter, true, int>);
	ClassDB::bind_method(script_operations::named<&SCMachineAction::update>("update", "m", "index", "delta"),
			&SCMachineAction::for_script<&SCMachineAction::update, true, int, double>);
	ClassDB::bind_method(
			script_operations::named<&SCMachineAction::exit>("exit", "m", "index"), &SCMachineAction::for_script<&SCMachineAction::exit, true, int>);
	ClassDB::bind_method(D_METHOD("summary"), &SCMachineAction::summary);
	ClassDB::bind_method(D_METHOD("wants_physics"), &SCMachineAction::wants_physics);
	ClassDB::bind_method(D_METHOD("uses_run_mode"), &SCMachineAction::uses_run_mode);
	ClassDB::bind_method(D_METHOD("finishes_as_it_starts"), &SCMachineAction::finishes_as_it_starts);
	ClassDB::bind_method(D_METHOD("works_after_finishing"), &SCMachineAction::works_after_finishing);
	ClassDB::bind_method(D_METHOD("needs_every_tick"), &SCMachineAction::needs_every_tick);
	ClassDB::bind_method(D_METHOD("holds_its_state"), &SCMachineAction::holds_its_state);
	ClassDB::bind_method(D_METHOD("repeats"), &SCMachineAction::repeats);
	ClassDB::bind_method(D_METHOD("variables_to_watch"), &SCMachineAction::variables_to_watch);
	ClassDB::bind_method(D_METHOD("variables_read"), &SCMachineAction::variables_read);
	ClassDB::bind_method(D_METHOD("variables_written"), &SCMachineAction::variables_written);
	ClassDB::bind_method(D_METHOD("events_sent"), &SCMachineAction::events_sent);
	ClassDB::bind_method(D_METHOD("optional_names"), &SCMachineAction::optional_names);
	ClassDB::bind_method(D_METHOD("suit_2d"), &SCMachineAction::suit_2d);
	ClassDB::bind_method(script_operations::named<&SCMachineAction::read_variables>("read_variables", "m"),
			&SCMachineAction::for_script<&SCMachineAction::read_variables, false>);
	ClassDB::bind_method(D_METHOD("live_words", "m", "line"), &SCMachineAction::live_words);

	GDVIRTUAL_BIND(_enter, "m", "index");
	GDVIRTUAL_BIND(_update, "m", "index", "delta");
	GDVIRTUAL_BIND(_exit, "m", "index");
	GDVIRTUAL_BIND(_summary);
	GDVIRTUAL_BIND(_wants_physics);
	GDVIRTUAL_BIND(_uses_run_mode);
	GDVIRTUAL_BIND(_finishes_as_it_starts);
	GDVIRTUAL_BIND(_works_after_finishing);
	GDVIRTUAL_BIND(_needs_every_tick);
	GDVIRTUAL_BIND(_holds_its_state);
	GDVIRTUAL_BIND(_repeats);
	GDVIRTUAL_BIND(_variables_to_watch);
	GDVIRTUAL_BIND(_variables_read);
	GDVIRTUAL_BIND(_variables_written);
	GDVIRTUAL_BIND(_events_sent);
	GDVIRTUAL_BIND(_optional_names);
	GDVIRTUAL_BIND(_suit_2d);
	GDVIRTUAL_BIND(_read_variables, "m");
	GDVIRTUAL_BIND(_live_words, "m", "line");
}

void SCMachineAction::bind_defaults() {
	ClassDB::bind_method(script_operations::named<&SCMachineAction::enter_default>("enter_default", "m", "index"),
			&SCMachineAction::for_script<&SCMachineAction::enter_default, false, int>);
	ClassDB::bind_method(script_operations::named<&SCMachineAction::update_default>("update_default", "m", "index", "delta"),
			&SCMachineAction::for_script<&SCMachineAction::update_default, false, int, double>);
	ClassDB::bind_method(script_operations::named<&SCMachineAction::exit_default>("exit_default", "m", "index"),
			&SCMachineAction::for_script<&SCMachineAction::exit_default, false, int>);
	ClassDB::bind_method(D_METHOD("summary_default"), &SCMachineAction::summary_default);
	ClassDB::bind_method(D_METHOD("wants_physics_default"), &SCMachineAction::wants_physics_default);
	ClassDB::bind_method(D_METHOD("uses_run_mode_default"), &SCMachineAction::uses_run_mode_default);
	ClassDB::bind_method(D_METHOD("finishes_as_it_starts_default"), &SCMachineAction::finishes_as_it_starts_default);
	ClassDB::bind_method(D_METHOD("works_after_finishing_default"), &SCMachineAction::works_after_finishing_default);
	ClassDB::bind_method(D_METHOD("needs_every_tick_default"), &SCMachineAction::needs_every_tick_default);
	ClassDB::bind_method(D_METHOD("holds_its_state_default"), &SCMachineAction::holds_its_state_default);
	ClassDB::bind_method(D_METHOD("repeats_default"), &SCMachineAction::repeats_default);
	ClassDB::bind_method(D_METHOD("variables_to_watch_default"), &SCMachineAction::variables_to_watch_default);
	ClassDB::bind_method(D_METHOD("variables_read_default"), &SCMachineAction::variables_read_default);
	ClassDB::bind_method(D_METHOD("variables_written_default"), &SCMachineAction::variables_written_default);
	ClassDB::bind_method(D_METHOD("events_sent_default"), &SCMachineAction::events_sent_default);
	ClassDB::bind_method(D_METHOD("optional_names_default"), &SCMachineAction::optional_names_default);
	ClassDB::bind_method(D_METHOD("suit_2d_default"), &SCMachineAction::suit_2d_default);
	ClassDB::bind_method(D_METHOD("read_variables_default", "m"), &SCMachineAction::read_variables_default);
	ClassDB::bind_method(D_METHOD("live_words_default", "m", "line"), &SCMachineAction::live_words_default);
}
