#include "action/variable_names.hpp"

#include "action/action_shared.hpp"

#include <cstdint>

namespace {

struct Remembered {
	const void *name = nullptr;
	uint32_t generation = 0;
	bool ends = false;
};

constexpr size_t SLOTS = 256;
thread_local Remembered remembered[SLOTS];

bool ask_everyone(const StringName &name) {
	ActionShared &shared = ActionShared::get();
	const std::lock_guard<std::mutex> hold(shared.ends_in_variable_lock);
	if (const bool *known = shared.ends_in_variable.getptr(name)) {
		return *known;
	}
	const bool ends = String(name).ends_with("_variable");
	shared.ends_in_variable.insert(name, ends);
	return ends;
}

} // namespace

// Equal names lie at one address, and the shared map keeps them there, so the address stands for the name.
bool ends_in_variable(const StringName &name) {
	const void *address = *static_cast<const void *const *>(name._native_ptr());
	Remembered &slot = remembered[(reinterpret_cast<uintptr_t>(address) >> 4) % SLOTS];
	const uint32_t generation = ActionShared::generation();
	if (slot.name != address || slot.generation != generation) {
		slot = { address, generation, ask_everyone(name) };
	}
	return slot.ends;
}
