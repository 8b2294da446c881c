#pragma once

// The named values of one machine with their limits, shares and watchers. The machine's `values`
// dictionary is made from it on reading: while the table is in use it is the only truth.
// It only stores; MachineRun tells, limits and shares.

#include "machine/name_map.hpp"
#include "machine/on_first_use.hpp"

#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/hash_set.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

// One side of a limit: a number, or the name of the variable that holds it, or neither for no limit.
struct ValueBound {
	bool is_number = false;
	double number = 0.0;
	StringName variable;

	// From nil, a number or a name, and back.
	static ValueBound of(const Variant &described);
	Variant described() const;
};

struct ValueLimits {
	ValueBound low;
	ValueBound high;
};

using NamedValues = NameMap<Variant>;

struct ValueTable {
	// First what a write of an ordinary variable reads.
	NamedValues table;
	bool in_use = false;
	bool changed = false;
	bool watching = false;
	// Some variable has limits, is one, or is shared.
	bool guarded = false;
	int limit_depth = 0;
	// The variables whose watchers are being told, each from within the one before.
	LocalVector<StringName> being_told;
	// The outermost telling in which they went too deep, 0 for none.
	uint64_t went_too_deep_in = 0;
	// The dictionary as handed over, the truth until the table is in use.
	OnFirstUse<Dictionary> given;

	HashMap<StringName, ValueLimits> limits;
	// Name to the names whose bounds depend on it.
	HashMap<StringName, LocalVector<StringName>> limited_by;
	// The variables that every machine shares.
	HashSet<StringName> shares;

	// Globals and, by global name, the Array of machines that share it: one pair for the whole game.
	OnFirstUse<Dictionary> globals;
	OnFirstUse<Dictionary> sharing;

	HashSet<StringName> watched;
	// Written while paused, told on resume.
	HashSet<StringName> pending_watchers;

	void load(const Dictionary &from);
	// Takes the table into use with these values.
	void load(NamedValues &&fresh);
	Dictionary dictionary() const;
	bool has(const StringName &name) const { return in_use ? table.has(name) : given->has(name); }
	Variant get(const StringName &name, const Variant &fallback) const;
	// Null when there is none; good until the next write. Only of a table that is in use.
	const Variant *find(const StringName &name) const { return table.getptr(name); }
	// Answers whether there was a former value. Its destructor can call user code, so the caller says when.
	bool put(const StringName &name, const Variant &fresh, Variant &former);

	// Called whenever one of the three has changed.
	void note_guards() { guarded = !limits.is_empty() || !limited_by.is_empty() || !shares.is_empty(); }
	void forget_limits();
	void limit(const StringName &name, const Variant &low, const Variant &high);
	// As scripts see them.
	Dictionary limits_dictionary() const;
	Dictionary limited_by_dictionary() const;
	Dictionary shares_dictionary() const;
};
