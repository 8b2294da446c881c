#include "machine/design_index.hpp"

#include "machine/names.hpp"

#include <godot_cpp/core/object.hpp>

namespace {

Array array_of(Object *object, const StringName &property) {
	const Variant value = object->get(property);
	return value.get_type() == Variant::ARRAY ? Array(value) : Array();
}

} // namespace

void DesignIndex::build(const Array &design) {
	by_name.clear();
	parents.clear();
	const MachineNames &names = MachineNames::shared();
	for (int64_t i = 0; i < design.size(); i++) {
		const Ref<Resource> state = design[i];
		if (state.is_null()) {
			continue;
		}
		const StringName state_name = state->get(names.state_name);
		if (!by_name.has(state_name)) {
			by_name.insert(state_name, state);
		}
		const Array sub_states = array_of(state.ptr(), names.sub_states);
		for (int64_t s = 0; s < sub_states.size(); s++) {
			if (const Object *sub_state = sub_states[s].get_validated_object()) {
				parents[sub_state->get_instance_id()] = state;
			}
		}
		const Array regions = array_of(state.ptr(), names.parallel_states);
		for (int64_t r = 0; r < regions.size(); r++) {
			Object *region = regions[r].get_validated_object();
			if (region == nullptr) {
				continue;
			}
			const Array inside = array_of(region, names.states);
			for (int64_t s = 0; s < inside.size(); s++) {
				if (const Object *sub_state = inside[s].get_validated_object()) {
					parents[sub_state->get_instance_id()] = state;
				}
			}
		}
	}
}

Ref<Resource> DesignIndex::find(const StringName &state_name) const {
	const Ref<Resource> *found = by_name.getptr(state_name);
	return found != nullptr ? *found : Ref<Resource>();
}

Ref<Resource> DesignIndex::parent_of(const Ref<Resource> &state) const {
	const Ref<Resource> *found = state.is_valid() ? parents.getptr(state->get_instance_id()) : nullptr;
	return found != nullptr ? *found : Ref<Resource>();
}

void DesignIndex::path_to(const Ref<Resource> &state, LocalVector<Ref<Resource>> &path) const {
	path.clear();
	for (Ref<Resource> at = state; at.is_valid(); at = parent_of(at)) {
		if (path.has(at)) {
			break;
		}
		path.push_back(at);
	}
	for (uint32_t low = 0, high = path.size(); low + 1 < high; low++) {
		high--;
		SWAP(path[low], path[high]);
	}
}

Ref<Resource> DesignIndex::child_toward(const Ref<Resource> &above, const Ref<Resource> &state) const {
	Ref<Resource> at = state;
	for (size_t steps = 0; at.is_valid() && steps <= parents.size(); steps++) {
		const Ref<Resource> parent = parent_of(at);
		if (parent == above) {
			return at;
		}
		at = parent;
	}
	return Ref<Resource>();
}
