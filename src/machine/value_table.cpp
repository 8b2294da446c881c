#include "machine/value_table.hpp"

#include <godot_cpp/variant/array.hpp>

#include <utility>

ValueBound ValueBound::of(const Variant &described) {
	ValueBound bound;
	switch (described.get_type()) {
		case Variant::INT:
		case Variant::FLOAT:
			bound.is_number = true;
			bound.number = described;
			break;
		case Variant::STRING:
		case Variant::STRING_NAME:
			bound.variable = described;
			break;
		default:
			break;
	}
	return bound;
}

Variant ValueBound::described() const {
	if (is_number) {
		return number;
	}
	return variable.is_empty() ? Variant() : Variant(variable);
}

void ValueTable::load(const Dictionary &from) {
	// Held until the table is whole again: the destructor of a value can call user code, which may read it.
	LocalVector<Variant> former;
	former.reserve(table.size());
	for (const NamedValues::Entry &entry : table) {
		former.push_back(entry.value);
	}
	given = from;
	table.clear();
	const Array names = from.keys();
	for (int64_t i = 0; i < names.size(); i++) {
		const Variant &name = names[i];
		if (name.get_type() == Variant::STRING_NAME || name.get_type() == Variant::STRING) {
			table.insert(StringName(name), from.get(name, Variant()));
		}
	}
}

void ValueTable::load(NamedValues &&fresh) {
	// Destroyed when all is in order: the destructor of a value can call user code.
	const NamedValues former(std::move(table));
	table = std::move(fresh);
	in_use = true;
	given.forget();
}

Dictionary ValueTable::dictionary() const {
	if (!in_use) {
		return given;
	}
	Dictionary all;
	for (const NamedValues::Entry &entry : table) {
		all[entry.key] = entry.value;
	}
	return all;
}

Variant ValueTable::get(const StringName &name, const Variant &fallback) const {
	if (!in_use) {
		return given->get(name, fallback);
	}
	const Variant *stored = table.getptr(name);
	return stored != nullptr ? *stored : fallback;
}

bool ValueTable::put(const StringName &name, const Variant &fresh, Variant &former) {
	if (in_use) {
		if (Variant *stored = table.getptr(name)) {
			former = std::move(*stored);
			*stored = fresh;
			return true;
		}
		table.insert(name, fresh);
		return false;
	}
	Dictionary &values = given.get();
	const bool existed = values.has(name);
	if (existed) {
		former = values.get(name, Variant());
	}
	values[name] = fresh;
	return existed;
}

void ValueTable::forget_limits() {
	limits.clear();
	limited_by.clear();
	note_guards();
}

void ValueTable::limit(const StringName &name, const Variant &low, const Variant &high) {
	ValueLimits both;
	both.low = ValueBound::of(low);
	both.high = ValueBound::of(high);
	limits[name] = both;
	guarded = true;
	for (const ValueBound *bound : { &both.low, &both.high }) {
		if (!bound->variable.is_empty()) {
			LocalVector<StringName> &dependents = limited_by[bound->variable];
			if (!dependents.has(name)) {
				dependents.push_back(name);
			}
		}
	}
}

Dictionary ValueTable::limits_dictionary() const {
	Dictionary all;
	for (const KeyValue<StringName, ValueLimits> &entry : limits) {
		all[entry.key] = Array::make(entry.value.low.described(), entry.value.high.described());
	}
	return all;
}

Dictionary ValueTable::limited_by_dictionary() const {
	Dictionary all;
	for (const KeyValue<StringName, LocalVector<StringName>> &entry : limited_by) {
		Array dependents;
		for (const StringName &dependent : entry.value) {
			dependents.push_back(dependent);
		}
		all[entry.key] = dependents;
	}
	return all;
}

Dictionary ValueTable::shares_dictionary() const {
	Dictionary all;
	for (const StringName &name : shares) {
		all[name] = true;
	}
	return all;
}
