#include "machine/design_index.hpp"

#include "design/sc_machine_parallel_state.hpp"
#include "design/sc_machine_state.hpp"
#include "machine/names.hpp"

#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>

namespace {

Array array_of(Object *object, const StringName &property) {
	const Variant value = object->get(property);
	return value.get_type() == Variant::ARRAY ? Array(value) : Array();
}

// What is read of a state, from its members when it is the compiled class.
StringName name_of(Resource *state, const SCMachineState *compiled) {
	return compiled != nullptr ? compiled->state_name : StringName(state->get(MachineNames::shared().state_name));
}

Array sub_states_of(Resource *state, const SCMachineState *compiled) {
	return compiled != nullptr ? Array(compiled->sub_states) : array_of(state, MachineNames::shared().sub_states);
}

Array regions_of(Resource *state, const SCMachineState *compiled) {
	return compiled != nullptr ? Array(compiled->parallel_states) : array_of(state, MachineNames::shared().parallel_states);
}

Array states_of(Object *region) {
	const SCMachineParallelState *compiled = Object::cast_to<SCMachineParallelState>(region);
	return compiled != nullptr ? Array(compiled->states) : array_of(region, MachineNames::shared().states);
}

} // namespace

DesignIndex::Record::Record() {
	static uint64_t last_number = 0;
	number = ++last_number;
}

DesignIndex::Record::~Record() {
	for (IndexedState *state : states) {
		memdelete(state);
	}
}

IndexedState *DesignIndex::Record::add(const Ref<Resource> &state) {
	if (IndexedState **known = by_state.getptr(state.ptr())) {
		return *known;
	}
	IndexedState *added = memnew(IndexedState);
	added->state = state;
	states.push_back(added);
	by_state.insert(state.ptr(), added);
	return added;
}

void DesignIndex::Record::put_below(const IndexedState *parent, const Array &inside) {
	for (int64_t i = 0; i < inside.size(); i++) {
		const Ref<Resource> state = inside[i];
		if (state.is_valid()) {
			add(state)->parent = parent;
			has_nested = true;
		}
	}
}

DesignIndex::DesignIndex(const DesignIndex &other) : record(other.record) {
	if (record != nullptr) {
		record->holders++;
	}
}

DesignIndex &DesignIndex::operator=(const DesignIndex &other) {
	if (record != other.record) {
		DesignIndex former(*this);
		let_go();
		record = other.record;
		if (record != nullptr) {
			record->holders++;
		}
	}
	return *this;
}

// The destructor of a state can call user code, which must find this let go of already.
void DesignIndex::let_go() {
	Record *former = record;
	record = nullptr;
	if (former != nullptr && --former->holders == 0) {
		memdelete(former);
	}
}

void DesignIndex::build(const Array &design) {
	DesignIndex fresh;
	fresh.record = memnew(Record);
	for (int64_t i = 0; i < design.size(); i++) {
		const Ref<Resource> state = design[i];
		if (state.is_null()) {
			continue;
		}
		IndexedState *indexed = fresh.record->add(state);
		const SCMachineState *compiled = Object::cast_to<SCMachineState>(state.ptr());
		const StringName state_name = name_of(state.ptr(), compiled);
		if (!fresh.record->by_name.has(state_name)) {
			fresh.record->by_name.insert(state_name, indexed);
		}
		fresh.record->put_below(indexed, sub_states_of(state.ptr(), compiled));
		const Array regions = regions_of(state.ptr(), compiled);
		for (int64_t r = 0; r < regions.size(); r++) {
			if (Object *region = regions[r].get_validated_object()) {
				fresh.record->put_below(indexed, states_of(region));
			}
		}
	}
	*this = fresh;
}

int DesignIndex::place_of(const Resource *state) const {
	const uint32_t count = record != nullptr ? record->states.size() : 0;
	for (uint32_t place = 0; place < count; place++) {
		if (record->states[place]->state.ptr() == state) {
			return int(place);
		}
	}
	return -1;
}

Resource *DesignIndex::at(int64_t place) const {
	return record != nullptr && place >= 0 && place < int64_t(record->states.size()) ? record->states[uint32_t(place)]->state.ptr() : nullptr;
}

Resource *DesignIndex::find(const StringName &state_name) const {
	IndexedState *const *found = record != nullptr ? record->by_name.getptr(state_name) : nullptr;
	return found != nullptr ? (*found)->state.ptr() : nullptr;
}

Resource *DesignIndex::parent_of(const Resource *state) const {
	IndexedState *const *found = record != nullptr && state != nullptr ? record->by_state.getptr(state) : nullptr;
	return found != nullptr && (*found)->parent != nullptr ? (*found)->parent->state.ptr() : nullptr;
}

void DesignIndex::path_to(Resource *state, LocalVector<Resource *> &path) const {
	path.clear();
	if (record == nullptr || !record->has_nested) {
		path.push_back(state);
		return;
	}
	path.push_back(state);
	IndexedState *const *found = record->by_state.getptr(state);
	for (const IndexedState *at = found != nullptr ? (*found)->parent : nullptr; at != nullptr; at = at->parent) {
		if (path.has(at->state.ptr())) {
			break;
		}
		path.push_back(at->state.ptr());
	}
	for (uint32_t low = 0, high = path.size(); low + 1 < high; low++) {
		high--;
		SWAP(path[low], path[high]);
	}
}

Resource *DesignIndex::child_toward(const Resource *above, Resource *state) const {
	Resource *at = state;
	const uint32_t most = record != nullptr ? record->by_state.size() : 0;
	for (uint32_t steps = 0; at != nullptr && steps <= most; steps++) {
		Resource *parent = parent_of(at);
		if (parent == above) {
			return at;
		}
		at = parent;
	}
	return nullptr;
}
