#pragma once

// The two indexes a running machine keeps of its design: state by name and parent by state.
// Built when a machine begins, read on every transition.

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/array.hpp>

using namespace godot;

class DesignIndex {
	HashMap<StringName, Ref<Resource>> by_name;
	HashMap<uint64_t, Ref<Resource>> parents;

public:
	void build(const Array &design);
	bool has_names() const { return !by_name.is_empty(); }
	bool has_parents() const { return !parents.is_empty(); }
	Ref<Resource> find(const StringName &state_name) const;
	Ref<Resource> parent_of(const Ref<Resource> &state) const;
	// From the top state down to `state`, both included. A ring of parents ends where it closes.
	void path_to(const Ref<Resource> &state, LocalVector<Ref<Resource>> &path) const;
	// The state on the way from `state` up to `above` whose parent is `above`; null when it is not below it.
	Ref<Resource> child_toward(const Ref<Resource> &above, const Ref<Resource> &state) const;
};
