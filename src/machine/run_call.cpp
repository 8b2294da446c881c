#include "machine/run_call.hpp"

#include "machine_node/sc_machine_base.hpp"

#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/templates/hashfuncs.hpp>

Callable RunCall::make(Kind kind, const SCMachineBase *machine, int64_t serial, int index, const Callable &then) {
	RunCall *made = memnew(RunCall);
	made->machine_id = machine != nullptr ? ObjectID(machine->get_instance_id()) : ObjectID();
	made->serial = serial;
	made->index = index;
	made->kind = kind;
	made->then = then;
	return Callable(made);
}

uint32_t RunCall::hash() const {
	uint32_t mixed = hash_murmur3_one_64(uint64_t(machine_id));
	mixed = hash_murmur3_one_64(uint64_t(serial), mixed);
	mixed = hash_murmur3_one_32(uint32_t(index), mixed);
	mixed = hash_murmur3_one_32(uint32_t(kind), mixed);
	return hash_fmix32(mixed);
}

String RunCall::get_as_text() const {
	return "SCMachine run call";
}

CallableCustom::CompareEqualFunc RunCall::get_compare_equal_func() const {
	return &RunCall::same;
}

CallableCustom::CompareLessFunc RunCall::get_compare_less_func() const {
	return &RunCall::before;
}

// Equal by what they do, so that a script may disconnect a finisher by asking for it once more.
bool RunCall::same(const CallableCustom *left, const CallableCustom *right) {
	const RunCall *a = static_cast<const RunCall *>(left);
	const RunCall *b = static_cast<const RunCall *>(right);
	return a->machine_id == b->machine_id && a->serial == b->serial && a->index == b->index && a->kind == b->kind && a->then == b->then;
}

bool RunCall::before(const CallableCustom *left, const CallableCustom *right) {
	const RunCall *a = static_cast<const RunCall *>(left);
	const RunCall *b = static_cast<const RunCall *>(right);
	if (a->machine_id != b->machine_id) {
		return uint64_t(a->machine_id) < uint64_t(b->machine_id);
	}
	if (a->serial != b->serial) {
		return a->serial < b->serial;
	}
	if (a->index != b->index) {
		return a->index < b->index;
	}
	if (a->kind != b->kind) {
		return a->kind < b->kind;
	}
	return a->then.hash() < b->then.hash();
}

void RunCall::call(const Variant **, int, Variant &answer, GDExtensionCallError &error) const {
	error.error = GDEXTENSION_CALL_OK;
	answer = Variant();
	SCMachineBase *machine = Object::cast_to<SCMachineBase>(ObjectDB::get_instance(machine_id));
	if (machine == nullptr) {
		return;
	}
	switch (kind) {
		case FINISH:
			machine->core_finish_serial(serial, index);
			return;
		case WAKE:
			machine->core_wake_resting(serial, index);
			return;
		case TWEEN_DONE:
			machine->core_tween_done(serial, index);
			return;
		case TIME_UP: {
			// The work may free the tween that holds this very call, and `then` with it.
			const Callable kept = then;
			machine->core_time_up(serial, index, kept);
			return;
		}
	}
}
