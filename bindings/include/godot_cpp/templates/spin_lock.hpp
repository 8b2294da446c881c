// A lock for sections of a few instructions, where waiting costs less than asking the system to.
#ifndef GODOT_CPP_TEMPLATES_SPIN_LOCK_HPP
#define GODOT_CPP_TEMPLATES_SPIN_LOCK_HPP

#include <atomic>

namespace godot {

class SpinLock {
	mutable std::atomic_flag locked = ATOMIC_FLAG_INIT;

public:
	void lock() const {
		while (locked.test_and_set(std::memory_order_acquire)) {
		}
	}
	void unlock() const { locked.clear(std::memory_order_release); }
};

} // namespace godot

#endif // GODOT_CPP_TEMPLATES_SPIN_LOCK_HPP
