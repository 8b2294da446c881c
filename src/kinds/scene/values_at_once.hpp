#pragma once

// Values that a machine gets all at once. Nobody hears of one before the last is in place, and nothing that they do then keeps one
// from getting there.

#include "machine/machine_run.hpp"

#include <godot_cpp/templates/local_vector.hpp>

class ValuesAtOnce {
	struct One {
		StringName name;
		Variant value;
	};
	LocalVector<One> values;

	static void put(MachineRun &run, const StringName &name, const Variant &value, LocalVector<StringName> &heard, LocalVector<Variant> &formers);
	static void limit_all(MachineRun &run, LocalVector<StringName> &heard, LocalVector<Variant> &formers);

public:
	void add(const StringName &name, const Variant &value) { values.push_back({ name, value }); }
	// May run a game's code once all are in.
	void put_into(MachineRun &run) const;
};
