#include "machine/event_state.hpp"

#include <godot_cpp/core/memory.hpp>

#include <utility>

namespace {

EventRegistry *registry = nullptr;

} // namespace

void EventState::remember(const StringName &name, const Variant &data, uint64_t sender) {
	// The destructor of the former data can call user code, which must find this already in order.
	const Variant former = std::move(last_data);
	if (last_name != name) {
		last_name = name;
	}
	last_data = data;
	last_sender = sender;
}

void EventState::add_forwarder(const Callable &forwarder) {
	Array longer = forwarder_list->duplicate();
	longer.push_back(forwarder);
	forwarder_list = longer;
	forwarders_known = forwarder_list->size();
}

void EventState::remove_forwarder(const Callable &forwarder) {
	Array shorter = forwarder_list->duplicate();
	shorter.erase(forwarder);
	forwarder_list = shorter;
	forwarders_known = forwarder_list->size();
}

void EventRegistry::listen(const StringName &event, uint64_t machine_id) {
	listeners[event][machine_id] = true;
}

void EventRegistry::stop_listening(const StringName &event, uint64_t machine_id) {
	Listeners *found = listeners.getptr(event);
	if (found == nullptr) {
		return;
	}
	found->erase(machine_id);
	if (found->is_empty()) {
		listeners.erase(event);
	}
}

void EventRegistry::listeners_of(const StringName &event, LocalVector<uint64_t> &ids) const {
	if (const Listeners *found = listeners.getptr(event)) {
		for (const KeyValue<uint64_t, bool> &listener : *found) {
			ids.push_back(listener.key);
		}
	}
}

void EventRegistry::use_global(const StringName &event) {
	int *uses = global_uses.getptr(event);
	if (uses == nullptr) {
		global_uses.insert(event, 1);
	} else {
		(*uses)++;
	}
}

void EventRegistry::drop_global(const StringName &event) {
	int *uses = global_uses.getptr(event);
	if (uses != nullptr && --*uses <= 0) {
		global_uses.erase(event);
	}
}

void EventRegistry::set_quest_events(const Array &events) {
	quest_events.clear();
	for (int64_t i = 0; i < events.size(); i++) {
		const StringName event = events[i];
		if (!event.is_empty()) {
			quest_events.insert(event);
		}
	}
}

void EventRegistry::note_sender(const StringName &event, uint64_t id) {
	if (!event.is_empty() && id != 0) {
		senders[event] = id;
	}
}

uint64_t EventRegistry::sender_of(const StringName &event) const {
	const uint64_t *found = senders.getptr(event);
	return found != nullptr ? *found : 0;
}

EventRegistry &EventRegistry::shared() {
	if (registry == nullptr) {
		registry = memnew(EventRegistry);
	}
	return *registry;
}

void EventRegistry::free_shared() {
	if (registry != nullptr) {
		memdelete(registry);
		registry = nullptr;
	}
}
