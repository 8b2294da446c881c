// A StringName that lives as long as the extension is loaded, made on first use: class names, the names of script virtuals. Static objects of engine
// types would be destroyed after the engine has gone; these hold no engine value until asked for one and are emptied when the extension closes.

#ifndef GODOT_CPP_CORE_STATIC_NAME_HPP
#define GODOT_CPP_CORE_STATIC_NAME_HPP

#include <atomic>

namespace godot {

class StringName;

namespace internal {

// Constant-initialised and trivially destructible, so that neither a guard nor an exit handler comes with it.
class StaticName {
	const char *text;
	std::atomic<StringName *> name{ nullptr };
	StaticName *next = nullptr;

	const StringName &make();

public:
	constexpr explicit StaticName(const char *p_text) : text(p_text) {}

	const StringName &get() {
		StringName *known = name.load(std::memory_order_acquire);
		return known != nullptr ? static_cast<const StringName &>(*known) : make();
	}

	const char *get_text() const { return text; }

	// Called once no code of the extension runs any more.
	static void release_all();
};

} // namespace internal
} // namespace godot

#endif // GODOT_CPP_CORE_STATIC_NAME_HPP
