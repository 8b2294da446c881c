#include "kinds/physics/body_properties_put.hpp"

#include "action/holders.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>

namespace body_properties {

namespace {

struct Names {
	// What changes the way the physics hold the body.
	StringName waiting[4] = { "freeze", "freeze_mode", "lock_rotation", "contact_monitor" };
};

bool has_to_wait(const StringName &property) {
	if (!Engine::get_singleton()->is_in_physics_frame()) {
		return false;
	}
	for (const StringName &name : NativeNames::of<Names>().waiting) {
		if (name == property) {
			return true;
		}
	}
	return false;
}

void put_later(int64_t id, const StringName &property, const Variant &value) {
	if (Object *object = ObjectDB::get_instance(ObjectID(uint64_t(id)))) {
		object->set(property, value);
	}
}

} // namespace

void put(Object *object, const StringName &property, const Variant &value) {
	if (has_to_wait(property)) {
		callable_mp_static(&put_later).call_deferred(int64_t(object->get_instance_id()), property, value);
	} else {
		object->set(property, value);
	}
}

int64_t put_for_a_while(Object *object, const StringName &property, const Variant &value, const SCMachineBase *machine) {
	const int64_t ticket = holders::hold(object, property, machine, value);
	put(object, property, value);
	return ticket;
}

void let_go(int64_t ticket, const StringName &property) {
	if (has_to_wait(property)) {
		callable_mp_static(&holders::let_go).call_deferred(ticket);
	} else {
		holders::let_go(ticket);
	}
}

} // namespace body_properties
