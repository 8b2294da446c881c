#include <godot_cpp/core/static_name.hpp>

#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/variant/string_name.hpp>

#include <mutex>

namespace godot {
namespace internal {

namespace {

std::mutex names_mutex;
StaticName *first_name = nullptr;

} // namespace

const StringName &StaticName::make() {
	const std::lock_guard<std::mutex> lock(names_mutex);
	StringName *known = name.load(std::memory_order_relaxed);
	if (known == nullptr) {
		known = memnew(StringName(text));
		next = first_name;
		first_name = this;
		name.store(known, std::memory_order_release);
	}
	return *known;
}

void StaticName::release_all() {
	const std::lock_guard<std::mutex> lock(names_mutex);
	while (first_name != nullptr) {
		StaticName *released = first_name;
		first_name = released->next;
		released->next = nullptr;
		memdelete(released->name.exchange(nullptr));
	}
}

} // namespace internal
} // namespace godot
