#include "machine_node/system_call.hpp"

#include "machine_node/sc_machine.hpp"

#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/templates/hashfuncs.hpp>

Callable SystemCall::make(Kind kind, const SCMachine *machine, const StringName &event) {
	SystemCall *made = memnew(SystemCall);
	made->machine_id = ObjectID(machine->get_instance_id());
	made->kind = kind;
	made->event = event;
	return Callable(made);
}

uint32_t SystemCall::hash() const {
	uint32_t mixed = hash_murmur3_one_64(uint64_t(machine_id));
	mixed = hash_murmur3_one_32(uint32_t(kind), mixed);
	mixed = hash_murmur3_one_32(uint32_t(event.hash()), mixed);
	return hash_fmix32(mixed);
}

String SystemCall::get_as_text() const {
	return "SCMachine system event";
}

CallableCustom::CompareEqualFunc SystemCall::get_compare_equal_func() const {
	return &SystemCall::same;
}

CallableCustom::CompareLessFunc SystemCall::get_compare_less_func() const {
	return &SystemCall::before;
}

bool SystemCall::same(const CallableCustom *left, const CallableCustom *right) {
	const SystemCall *a = static_cast<const SystemCall *>(left);
	const SystemCall *b = static_cast<const SystemCall *>(right);
	return a->machine_id == b->machine_id && a->kind == b->kind && a->event == b->event;
}

bool SystemCall::before(const CallableCustom *left, const CallableCustom *right) {
	const SystemCall *a = static_cast<const SystemCall *>(left);
	const SystemCall *b = static_cast<const SystemCall *>(right);
	if (a->machine_id != b->machine_id) {
		return uint64_t(a->machine_id) < uint64_t(b->machine_id);
	}
	if (a->kind != b->kind) {
		return a->kind < b->kind;
	}
	return a->event < b->event;
}

int SystemCall::most_arguments() const {
	switch (kind) {
		case PLAIN:
		case VISIBILITY:
			return 0;
		case WITH_ARGUMENT:
		case GUI_INPUT:
			return 1;
		case OBJECT_INPUT:
			break;
	}
	return 5;
}

// In 2D a collision object's input comes with fewer arguments than in 3D.
int SystemCall::fewest_arguments() const {
	return kind == OBJECT_INPUT ? 0 : most_arguments();
}

int SystemCall::get_argument_count(bool &is_known) const {
	is_known = true;
	return most_arguments();
}

void SystemCall::call(const Variant **arguments, int count, Variant &answer, GDExtensionCallError &error) const {
	answer = Variant();
	error.error = GDEXTENSION_CALL_OK;
	if (count > most_arguments() || count < fewest_arguments()) {
		const bool too_many = count > most_arguments();
		error.error = too_many ? GDEXTENSION_CALL_ERROR_TOO_MANY_ARGUMENTS : GDEXTENSION_CALL_ERROR_TOO_FEW_ARGUMENTS;
		error.argument = count;
		error.expected = too_many ? most_arguments() : fewest_arguments();
		return;
	}
	SCMachine *machine = Object::cast_to<SCMachine>(ObjectDB::get_instance(machine_id));
	if (machine == nullptr) {
		return;
	}
	// Taking the event may end the connection that holds this very call.
	const StringName name = event;
	switch (kind) {
		case PLAIN:
			machine->core_system_event(name, Variant());
			return;
		case WITH_ARGUMENT:
			machine->core_system_event(name, *arguments[0]);
			return;
		case VISIBILITY:
			machine->on_visibility_changed(name);
			return;
		case GUI_INPUT:
			machine->on_mouse_button(arguments[0]->get_validated_object(), name);
			return;
		case OBJECT_INPUT:
			machine->on_mouse_button(count > 1 ? arguments[1]->get_validated_object() : nullptr, name);
			return;
	}
}
