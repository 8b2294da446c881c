#include "settings/shown_names.hpp"

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>

#include <mutex>

using namespace godot;

namespace {

constexpr uint32_t FEW = 256;

struct Shown {
	HashMap<uint64_t, String> by_id;
	uint32_t look_through_at = FEW;
};

Shown *shown = nullptr;
std::mutex shown_lock;

void drop_the_dead() {
	LocalVector<uint64_t> dead;
	for (const KeyValue<uint64_t, String> &entry : shown->by_id) {
		if (ObjectDB::get_instance(entry.key) == nullptr) {
			dead.push_back(entry.key);
		}
	}
	for (const uint64_t id : dead) {
		shown->by_id.erase(id);
	}
	shown->look_through_at = shown->by_id.size() * 2 + FEW;
}

bool note(uint64_t id, const String &held, const String &name) {
	const std::lock_guard<std::mutex> guard(shown_lock);
	if (shown == nullptr) {
		shown = memnew(Shown);
	}
	const String *before = shown->by_id.getptr(id);
	const bool is_free = held.is_empty() || held == name || (before != nullptr && *before == held);
	if (is_free) {
		shown->by_id[id] = name;
	}
	if (shown->by_id.size() > shown->look_through_at) {
		drop_the_dead();
	}
	return is_free && held != name;
}

} // namespace

// Telling of the change comes back in here, so nothing is held meanwhile.
void shown_names::show(const Ref<Resource> &resource, const String &name) {
	if (resource.is_valid() && note(resource->get_instance_id(), resource->get_name(), name)) {
		resource->set_name(name);
	}
}

void shown_names::leave_out_of_files(const Object *object, PropertyInfo &property) {
	if (shown == nullptr || property.name != StringName("resource_name")) {
		return;
	}
	const Resource *resource = Object::cast_to<Resource>(object);
	const String held = resource != nullptr ? resource->get_name() : String();
	const std::lock_guard<std::mutex> guard(shown_lock);
	const String *name = resource != nullptr ? shown->by_id.getptr(resource->get_instance_id()) : nullptr;
	if (name != nullptr && *name == held) {
		property.usage &= ~uint32_t(PROPERTY_USAGE_STORAGE);
	}
}

void shown_names::free_shared() {
	if (shown != nullptr) {
		memdelete(shown);
		shown = nullptr;
	}
}
