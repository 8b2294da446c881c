#include "sc_machine_core.hpp"

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

template <class Work>
double average_nanoseconds(int64_t times, const Work &work) {
	if (times < 1) {
		return 0.0;
	}
	Time *time = Time::get_singleton();
	const uint64_t before = time->get_ticks_usec();
	for (int64_t i = 0; i < times; i++) {
		work();
	}
	return double(time->get_ticks_usec() - before) * 1000.0 / double(times);
}

} // namespace

SCMachineCore::~SCMachineCore() {
	leave();
}

void SCMachineCore::set_design(const Ref<Resource> &new_design) {
	// Held to the end: with its last holder gone it may run a game's code.
	const Ref<Resource> former = design;
	leave();
	design = new_design;
	rebuild();
	if (is_inside_tree()) {
		join();
	}
}

void SCMachineCore::rebuild() {
	rows.clear();
	ways.clear();
	start_row = NOWHERE;
	current_row = NOWHERE;
	if (design.is_null()) {
		return;
	}
	const MachineNames &names = MachineNames::shared();
	const Ref<Resource> read = design;
	const Array states = list_of(read.ptr(), names.states);
	LocalVector<Object *> read_states;
	HashMap<StringName, int> row_of;
	for (int64_t i = 0; i < states.size(); i++) {
		Object *state = states[i].get_validated_object();
		if (state == nullptr) {
			continue;
		}
		const StringName name = name_of(state, names.state_name);
		if (!row_of.has(name)) {
			row_of.insert(name, int(rows.size()));
		}
		rows.push_back(name);
		read_states.push_back(state);
	}
	for (uint32_t row = 0; row < read_states.size(); row++) {
		const Array transitions = list_of(read_states[row], names.transitions);
		for (int64_t i = 0; i < transitions.size(); i++) {
			Object *transition = transitions[i].get_validated_object();
			if (transition == nullptr) {
				continue;
			}
			const StringName event = name_of(transition, names.event);
			const int *to = row_of.getptr(name_of(transition, names.to_state));
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
	Object *initial = read->get("initial_state").get_validated_object();
	const int *found = initial != nullptr ? row_of.getptr(name_of(initial, names.state_name)) : nullptr;
	if (found != nullptr) {
		start_row = *found;
	}
}

void SCMachineCore::join() {
	leave();
	current_row = start_row;
	registered_as = get_instance_id();
	for (const KeyValue<StringName, LocalVector<int>> &way : ways) {
		registry().listeners[way.key].insert(registered_as, true);
	}
}

void SCMachineCore::leave() {
	if (registered_as == 0 || shared_registry == nullptr) {
		return;
	}
	for (const KeyValue<StringName, LocalVector<int>> &way : ways) {
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
	const LocalVector<int> *targets = is_row(current_row) ? ways.getptr(event) : nullptr;
	const int to = targets != nullptr ? (*targets)[current_row] : NOWHERE;
	if (!is_row(to)) {
		return;
	}
	const int from = current_row;
	current_row = to;
	changes++;
	const StringName &changed = MachineNames::shared().state_changed;
	if (has_connections(changed)) {
		emit_signal(changed, rows[from], rows[to]);
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
	return is_row(current_row) ? rows[current_row] : StringName();
}

double SCMachineCore::time_gets(Object *object, const StringName &property, int64_t times) {
	return object != nullptr ? average_nanoseconds(times, [&] { object->get(property); }) : 0.0;
}

double SCMachineCore::time_calls(Object *object, const StringName &method, int64_t times) {
	if (object == nullptr) {
		return 0.0;
	}
	const ObjectID id = ObjectID(object->get_instance_id());
	return average_nanoseconds(times, [&] {
		if (ObjectDB::get_instance(id) != nullptr) {
			object->call(method);
		}
	});
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
