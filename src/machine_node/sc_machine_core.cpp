#include "machine_node/sc_machine_core.hpp"

#include "machine/names.hpp"
#include "machine/scratch_lists.hpp"

#include <godot_cpp/classes/time.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/object.hpp>

namespace {

// A map for the sake of its order: they hear an event in the order in which they joined.
using Listeners = HashMap<uint64_t, bool>;

struct Registry {
	HashMap<StringName, Listeners> listeners;
	// Reused, so that reaching many of them allocates nothing.
	ScratchLists<uint64_t> lists;
};

Registry *shared_registry = nullptr;

Registry &registry() {
	if (shared_registry == nullptr) {
		shared_registry = memnew(Registry);
	}
	return *shared_registry;
}

Array list_of(Object *holder, const StringName &property) {
	const Variant list = holder->get(property);
	return list.get_type() == Variant::ARRAY ? Array(list) : Array();
}

StringName name_of(Object *holder, const StringName &property) {
	const Variant name = holder->get(property);
	return name.get_type() == Variant::STRING_NAME || name.get_type() == Variant::STRING ? StringName(name) : StringName();
}

// The work may free what it is done on, and finding that out is part of what is measured.
template <class Work>
double average_nanoseconds(Object *object, int64_t times, const Work &work) {
	if (object == nullptr || times < 1) {
		return 0.0;
	}
	const ObjectID id = ObjectID(object->get_instance_id());
	Time *time = Time::get_singleton();
	const uint64_t before = time->get_ticks_usec();
	for (int64_t i = 0; i < times && ObjectDB::get_instance(id) != nullptr; i++) {
		work();
	}
	return double(time->get_ticks_usec() - before) * 1000.0 / double(times);
}

} // namespace

SCMachineCore::~SCMachineCore() {
	leave();
}

void SCMachineCore::set_design(const Ref<Resource> &new_design) {
	// Held to the end: its destructor can call user code.
	const Ref<Resource> former = design;
	const Ref<Resource> wanted = new_design;
	design = wanted;
	// Reading can call user code too, which may free this node or give it another design.
	const ObjectID own_id = ObjectID(get_instance_id());
	const Skeleton fresh(wanted);
	if (ObjectDB::get_instance(own_id) == nullptr || design != wanted) {
		return;
	}
	leave();
	skeleton = fresh;
	current_row = NOWHERE;
	if (is_inside_tree()) {
		join();
	}
}

SCMachineCore::Skeleton::Skeleton(const Ref<Resource> &design) {
	if (design.is_null()) {
		return;
	}
	const MachineNames &names = MachineNames::shared();
	const Array states = list_of(design.ptr(), names.states);
	LocalVector<Variant> holders;
	HashMap<StringName, int> row_of;
	for (int64_t i = 0; i < states.size(); i++) {
		const Variant holder = states[i];
		Object *state = holder.get_validated_object();
		if (state == nullptr) {
			continue;
		}
		const StringName name = name_of(state, names.state_name);
		if (!row_of.has(name)) {
			row_of.insert(name, int(rows.size()));
		}
		rows.push_back(name);
		holders.push_back(holder);
	}
	for (uint32_t row = 0; row < holders.size(); row++) {
		Object *state = holders[row].get_validated_object();
		const Array transitions = state != nullptr ? list_of(state, names.transitions) : Array();
		for (int64_t i = 0; i < transitions.size(); i++) {
			const Variant holder = transitions[i];
			Object *transition = holder.get_validated_object();
			const StringName to_state = transition != nullptr ? name_of(transition, names.to_state) : StringName();
			const int *to = row_of.getptr(to_state);
			transition = holder.get_validated_object();
			const StringName event = transition != nullptr ? name_of(transition, names.event) : StringName();
			if (to == nullptr || event.is_empty()) {
				continue;
			}
			LocalVector<int> &targets = ways[event];
			while (targets.size() < rows.size()) {
				targets.push_back(NOWHERE);
			}
			if (targets[row] == NOWHERE) {
				targets[row] = *to;
			}
		}
	}
	if (rows.is_empty()) {
		return;
	}
	start_row = 0;
	const Variant initial = design->get("initial_state");
	Object *state = initial.get_validated_object();
	if (const int *found = state != nullptr ? row_of.getptr(name_of(state, names.state_name)) : nullptr) {
		start_row = *found;
	}
}

void SCMachineCore::join() {
	leave();
	current_row = skeleton.start_row;
	registered_as = get_instance_id();
	for (const KeyValue<StringName, LocalVector<int>> &way : skeleton.ways) {
		registry().listeners[way.key].insert(registered_as, true);
	}
}

void SCMachineCore::leave() {
	if (registered_as == 0 || shared_registry == nullptr) {
		return;
	}
	for (const KeyValue<StringName, LocalVector<int>> &way : skeleton.ways) {
		Listeners *listeners = shared_registry->listeners.getptr(way.key);
		if (listeners == nullptr) {
			continue;
		}
		listeners->erase(registered_as);
		if (listeners->is_empty()) {
			shared_registry->listeners.erase(way.key);
		}
	}
	registered_as = 0;
}

void SCMachineCore::send_event(const StringName &event) {
	const LocalVector<int> *targets = is_row(current_row) ? skeleton.ways.getptr(event) : nullptr;
	const int to = targets != nullptr ? (*targets)[current_row] : NOWHERE;
	if (!is_row(to)) {
		return;
	}
	const int from = current_row;
	current_row = to;
	changes++;
	const StringName &changed = MachineNames::shared().state_changed;
	if (has_connections(changed)) {
		emit_signal(changed, skeleton.rows[from], skeleton.rows[to]);
	}
}

void SCMachineCore::broadcast_everywhere(const StringName &event) {
	const Listeners *listeners = shared_registry != nullptr ? shared_registry->listeners.getptr(event) : nullptr;
	if (listeners == nullptr) {
		return;
	}
	const StringName kept_event = event;
	ScratchLists<uint64_t>::Borrowed ids(shared_registry->lists);
	for (const KeyValue<uint64_t, bool> &listener : *listeners) {
		ids.list.push_back(listener.key);
	}
	for (const uint64_t id : ids.list) {
		if (SCMachineCore *core = Object::cast_to<SCMachineCore>(ObjectDB::get_instance(id))) {
			core->send_event(kept_event);
		}
	}
}

StringName SCMachineCore::get_current_state() const {
	return is_row(current_row) ? skeleton.rows[current_row] : StringName();
}

double SCMachineCore::time_gets(Object *object, const StringName &property, int64_t times) {
	return average_nanoseconds(object, times, [&] { object->get(property); });
}

double SCMachineCore::time_calls(Object *object, const StringName &method, int64_t times) {
	return average_nanoseconds(object, times, [&] { object->call(method); });
}

void SCMachineCore::free_shared() {
	if (shared_registry != nullptr) {
		memdelete(shared_registry);
		shared_registry = nullptr;
	}
}

void SCMachineCore::_notification(int what) {
	switch (what) {
		case NOTIFICATION_ENTER_TREE:
			join();
			break;
		case NOTIFICATION_EXIT_TREE:
		case NOTIFICATION_PREDELETE:
			leave();
			break;
		default:
			break;
	}
}

void SCMachineCore::_bind_methods() {
	ClassDB::bind_method(D_METHOD("set_design", "design"), &SCMachineCore::set_design);
	ClassDB::bind_method(D_METHOD("get_design"), &SCMachineCore::get_design);
	ADD_PROPERTY(PropertyInfo(Variant::OBJECT, "design", PROPERTY_HINT_RESOURCE_TYPE, "Resource"), "set_design", "get_design");
	ClassDB::bind_method(D_METHOD("send_event", "event"), &SCMachineCore::send_event);
	ClassDB::bind_static_method("SCMachineCore", D_METHOD("broadcast_everywhere", "event"), &SCMachineCore::broadcast_everywhere);
	ClassDB::bind_method(D_METHOD("get_current_state"), &SCMachineCore::get_current_state);
	ClassDB::bind_method(D_METHOD("get_changes"), &SCMachineCore::get_changes);
	ClassDB::bind_static_method("SCMachineCore", D_METHOD("time_gets", "object", "property", "times"), &SCMachineCore::time_gets);
	ClassDB::bind_static_method("SCMachineCore", D_METHOD("time_calls", "object", "method", "times"), &SCMachineCore::time_calls);
	ADD_SIGNAL(MethodInfo("state_changed", PropertyInfo(Variant::STRING_NAME, "from"), PropertyInfo(Variant::STRING_NAME, "to")));
}
