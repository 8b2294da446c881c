#pragma once

// What a running machine looks up in its design: a state by its name, and the states around a state.
// Built when a machine begins, read on every transition. Copies share one index; whoever holds a copy
// while user code may run can go on with the states found in it, even if the machine has begun
// anew with another design meanwhile.

#include "machine/name_map.hpp"

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/array.hpp>

using namespace godot;

struct IndexedState {
	Ref<Resource> state;
	const IndexedState *parent = nullptr;
};

class DesignIndex {
	struct Record {
		uint32_t holders = 1;
		// Some state lies within another.
		bool has_nested = false;
		// Never given twice.
		uint64_t number = 0;
		LocalVector<IndexedState *> states;
		NameMap<IndexedState *> by_name;
		HashMap<const Resource *, IndexedState *> by_state;

		Record();
		~Record();
		IndexedState *add(const Ref<Resource> &state);
		void put_below(const IndexedState *parent, const Array &inside);
	};

	Record *record = nullptr;

	void let_go();

public:
	DesignIndex() = default;
	DesignIndex(const DesignIndex &other);
	DesignIndex &operator=(const DesignIndex &other);
	~DesignIndex() { let_go(); }

	void build(const Array &design);
	bool has_names() const { return record != nullptr && !record->by_name.is_empty(); }
	// Tells this index from every other, for whoever remembers what was found in it; 0 for none.
	uint64_t number() const { return record != nullptr ? record->number : 0; }
	bool has(const Resource *state) const { return record != nullptr && record->by_state.has(state); }
	// A state by its place in the design, for what is kept longer than an object lives: -1 and null for none.
	int place_of(const Resource *state) const;
	Resource *at(int64_t place) const;
	// Null for what is not in the design.
	Resource *find(const StringName &state_name) const;
	Resource *parent_of(const Resource *state) const;
	// From the top state down to `state`, both included. A ring of parents ends where it closes.
	void path_to(Resource *state, LocalVector<Resource *> &path) const;
	// The state on the way from `state` up to `above` whose parent is `above`; null when it is not below it.
	Resource *child_toward(const Resource *above, Resource *state) const;
};
