#include "kinds/scene/values_at_once.hpp"

#include "machine/value_kinds.hpp"

namespace {

// Variables that limit one another in a ring end here.
constexpr int MOST_ROUNDS = 8;
// The engine prints an error when it compares what is nested about twice as deep.
constexpr int MOST_LEVELS_COMPARED = 50;

bool is_nested_deeper(const Variant &value, int levels) {
	const bool is_table = value.get_type() == Variant::DICTIONARY;
	if (!is_table && value.get_type() != Variant::ARRAY) {
		return false;
	}
	const Array inner = is_table ? Dictionary(value).values() : Array(value);
	for (int64_t i = 0; i < inner.size() && levels > 0; i++) {
		if (is_nested_deeper(inner[i], levels - 1)) {
			return true;
		}
	}
	return levels == 0;
}

bool is_unchanged(const Variant &former, const Variant &value) {
	return former.get_type() == value.get_type() && !is_nested_deeper(value, MOST_LEVELS_COMPARED) && ValueKinds::is_same(former, value);
}

} // namespace

void ValuesAtOnce::put(MachineRun &run, const StringName &name, const Variant &value, LocalVector<StringName> &heard, LocalVector<Variant> &formers) {
	Variant former;
	const bool existed = run.values.put(name, value, former);
	if (run.values.watching && run.values.watched.has(name) && !(existed && is_unchanged(former, value)) && !heard.has(name)) {
		heard.push_back(name);
	}
	if (ValueKinds::may_call_out(former.get_type())) {
		formers.push_back(former);
	}
}

// Only when all are in, as a limit may be one of them.
void ValuesAtOnce::limit_all(MachineRun &run, LocalVector<StringName> &heard, LocalVector<Variant> &formers) {
	bool changes = true;
	for (int round = 0; round < MOST_ROUNDS && changes; round++) {
		changes = false;
		for (const KeyValue<StringName, ValueLimits> &entry : run.values.limits) {
			if (!run.has_value(entry.key)) {
				continue;
			}
			const Variant now = run.get_value(entry.key, Variant());
			const Variant limited = run.within_limits(entry.key, now);
			if (!ValueKinds::is_same(now, limited)) {
				put(run, entry.key, limited, heard, formers);
				changes = true;
			}
		}
	}
}

void ValuesAtOnce::put_into(MachineRun &run) const {
	// Destroyed last of all, as that can call user code.
	LocalVector<Variant> formers;
	const MachineRun::Busy keep(run);
	LocalVector<StringName> heard;
	for (const One &one : values) {
		put(run, one.name, one.value, heard, formers);
	}
	limit_all(run, heard, formers);
	run.mark_values_changed();
	for (const One &one : values) {
		if (run.values.shares.has(one.name)) {
			run.share_value(one.name, run.get_value(one.name, one.value));
		}
	}
	for (const StringName &name : heard) {
		if (!run.is_running()) {
			break;
		}
		if (run.holds_writes()) {
			run.values.pending_watchers.insert(name);
		} else {
			run.tell_watchers(name);
		}
	}
}
