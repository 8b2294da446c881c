#include "action/action_shared.hpp"

#include <atomic>

namespace {

std::atomic<ActionShared *> made{ nullptr };
std::atomic<uint32_t> generations{ 1 };
std::mutex making;

} // namespace

ActionShared::ActionShared() {
	for (const char *name : { "run_mode", "run_mode_saved", "from_variables", "invert", "update_interval", "wait_for_previous", "wait_for_actions", "disabled",
				 "display_name" }) {
		the_machines_own.insert(name);
	}
}

const Ref<RegEx> &ActionShared::pattern(const String &text) {
	if (const Ref<RegEx> *found = patterns.getptr(text)) {
		return *found;
	}
	patterns.insert(text, RegEx::create_from_string(text));
	return *patterns.getptr(text);
}

ActionShared &ActionShared::get() {
	ActionShared *found = made.load(std::memory_order_acquire);
	if (found == nullptr) {
		const std::lock_guard<std::mutex> hold(making);
		found = made.load(std::memory_order_acquire);
		if (found == nullptr) {
			found = memnew(ActionShared);
			made.store(found, std::memory_order_release);
		}
	}
	return *found;
}

void ActionShared::free_shared() {
	ActionShared *found = made.exchange(nullptr);
	if (found != nullptr) {
		generations++;
		memdelete(found);
	}
}

uint32_t ActionShared::generation() {
	return generations.load(std::memory_order_relaxed);
}
