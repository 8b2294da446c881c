#pragma once

// The base of every action kind, and of a game maker's own actions. One action resource is shared by
// every machine that runs its state, so nothing that changes per machine may live in it: that goes in
// the slot the machine keeps for it.
//
// Every operation exists three times: the public one, which the core calls; the script's `_name`,
// which the public one prefers; and the `_default` one, which kinds override.

#include "action/bound_settings.hpp"
#include "machine_node/sc_machine.hpp"
#include "settings/class_table.hpp"
#include "settings/setting_rules.hpp"

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/core/gdvirtual.gen.inc>
#include <godot_cpp/variant/typed_dictionary.hpp>

using namespace godot;

class SCMachineAction : public Resource {
	GDCLASS(SCMachineAction, Resource)
	SC_FIELDS

public:
	SC_ENUM(RunMode, ONCE, EVERY_FRAME)

	RunMode run_mode = ONCE;
	double update_interval = 0.0;
	bool wait_for_previous = false;
	bool disabled = false;
	String display_name;
	// Whoever changes one of these two here says so to `bound_settings`.
	TypedDictionary<StringName, StringName> from_variables;
	// What each bound setting was typed in as, remembered before it is first overwritten.
	TypedDictionary<StringName, Variant> typed_in;
	mutable BoundSettings bound_settings;

	// The row of the compiled kind this is, null for an action made by a script.
	virtual const ClassRow *class_row() const { return nullptr; }

	void enter(SCMachineBase *machine, int index);
	void update(SCMachineBase *machine, int index, double delta);
	void exit(SCMachineBase *machine, int index);
	String summary();
	bool wants_physics();
	bool uses_run_mode() { return kind_alone ? kind_uses_run_mode : ask_uses_run_mode(); }
	bool finishes_as_it_starts();
	bool works_after_finishing();
	bool needs_every_tick();
	String holds_its_state();
	bool repeats() { return kind_alone ? repeats_default() : ask_repeats(); }
	PackedStringArray variables_to_watch();
	PackedStringArray variables_read();
	PackedStringArray variables_written();
	PackedStringArray events_sent();
	// Settings that may stay empty without the summary lacking something.
	TypedArray<StringName> optional_names();
	void suit_2d();
	void read_variables(SCMachineBase *machine);
	// The same for whoever calls the action in the machine's place. False when it is not to go on.
	bool read_variables_first(SCMachineBase *machine);
	String live_words(SCMachineBase *machine, const String &line);

	virtual void enter_default(SCMachineBase *machine, int index);
	virtual void update_default(SCMachineBase *machine, int index, double delta);
	virtual void exit_default(SCMachineBase *machine, int index);
	virtual String summary_default();
	virtual bool wants_physics_default();
	virtual bool uses_run_mode_default();
	virtual bool finishes_as_it_starts_default();
	virtual bool works_after_finishing_default();
	virtual bool needs_every_tick_default();
	virtual String holds_its_state_default();
	virtual bool repeats_default() { return run_mode == EVERY_FRAME && uses_run_mode(); }
	virtual PackedStringArray variables_to_watch_default();
	virtual PackedStringArray variables_read_default();
	virtual PackedStringArray variables_written_default();
	virtual PackedStringArray events_sent_default();
	virtual TypedArray<StringName> optional_names_default();
	virtual void suit_2d_default();
	virtual void read_variables_default(SCMachineBase *machine);
	virtual String live_words_default(SCMachineBase *machine, const String &line);

	// The event that it sends later when it waits with sending one.
	virtual StringName delayed_event() const { return StringName(); }

	// Whether the operation does anything at all, in a script or in the compiled half.
	bool has_enter();
	bool has_update();
	bool has_exit();
	// Asked before each call of the action.
	bool reads_variables() const { return bound_settings.may_be_in_use(from_variables); }
	TypedDictionary<StringName, StringName> get_from_variables() const {
		bound_settings.note_names();
		return from_variables;
	}
	void set_from_variables(const TypedDictionary<StringName, StringName> &bindings) {
		bound_settings.note_names();
		from_variables = bindings;
	}
	// Bound without its types: a script that names the engine's "Variant" there does not compile without an error.
	Dictionary get_typed_in() const {
		bound_settings.note_typed_in();
		return typed_in;
	}
	bool is_typed_in(const StringName &setting) const;
	// The line the graph draws.
	String shown_summary();
	// Every variable that it and its condition have to do with.
	TypedArray<StringName> variables_used();
	void forget_variables_used() { used_known = false; }
	// Noted as its state is compiled: no script has a word in what this action is, so none is asked while it runs.
	void note_kind_alone(bool is_kind_alone) {
		kind_alone = is_kind_alone;
		kind_uses_run_mode = uses_run_mode_default();
		bound_settings.forget();
	}
	// The inspector's rules, for a script that has a _validate_property of its own.
	void validate_setting(Dictionary property) const;

protected:
	// Whether a setting says something, or may: it is on, above zero or holds something, or it is read from a variable.
	template <auto Field>
	bool has_some() const {
		const auto &value = static_cast<const typename FieldOf<Field>::Owner *>(this)->*Field;
		return setting_rules::says_something(value) || !is_typed_in(FieldOf<Field>::row->info.name);
	}

	static void _bind_methods();
	bool _get(const StringName &name, Variant &value) const;
	bool _set(const StringName &name, const Variant &value);
	void _get_property_list(List<PropertyInfo> *list) const;
	void _validate_property(PropertyInfo &property) const;

	GDVIRTUAL2(_enter, SCMachine *, int)
	GDVIRTUAL3(_update, SCMachine *, int, double)
	GDVIRTUAL2(_exit, SCMachine *, int)
	GDVIRTUAL0R(String, _summary)
	GDVIRTUAL0R(bool, _wants_physics)
	GDVIRTUAL0R(bool, _uses_run_mode)
	GDVIRTUAL0R(bool, _finishes_as_it_starts)
	GDVIRTUAL0R(bool, _works_after_finishing)
	GDVIRTUAL0R(bool, _needs_every_tick)
	GDVIRTUAL0R(String, _holds_its_state)
	GDVIRTUAL0R(bool, _repeats)
	GDVIRTUAL0R(PackedStringArray, _variables_to_watch)
	GDVIRTUAL0R(PackedStringArray, _variables_read)
	GDVIRTUAL0R(PackedStringArray, _variables_written)
	GDVIRTUAL0R(PackedStringArray, _events_sent)
	// Untyped, so that a script may answer with either kind of list.
	GDVIRTUAL0R(Array, _optional_names)
	GDVIRTUAL0(_suit_2d)
	GDVIRTUAL1(_read_variables, SCMachine *)
	GDVIRTUAL2R(String, _live_words, SCMachine *, String)

private:
	// An operation as scripts call it. A default one is what a script's own goes on to, with the variables read already, and
	// perhaps with settings of its own put in since.
	template <auto Operation, bool ReadsFirst, class... Arguments>
	void for_script(const Variant &m, Arguments... arguments);
	bool ask_uses_run_mode();
	bool ask_repeats();

	// A file of a script-based action sets this before the script is attached.
	int pending_run_mode = -1;
	TypedArray<StringName> used;
	bool used_known = false;
	bool kind_alone = false;
	bool kind_uses_run_mode = true;

	void reapply_run_mode();
	static void bind_operations();
	static void bind_defaults();
};
