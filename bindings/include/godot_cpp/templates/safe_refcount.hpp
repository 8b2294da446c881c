// Numbers and flags that several threads may change.
#ifndef GODOT_CPP_TEMPLATES_SAFE_REFCOUNT_HPP
#define GODOT_CPP_TEMPLATES_SAFE_REFCOUNT_HPP

#include <atomic>
#include <cstdint>
#include <type_traits>

namespace godot {

template <typename T>
class SafeNumeric {
	static_assert(std::atomic<T>::is_always_lock_free, "This number has no atomic instructions.");

	std::atomic<T> value;

public:
	explicit SafeNumeric(T initial = T(0)) :
			value(initial) {}

	void set(T number) { value.store(number, std::memory_order_release); }
	T get() const { return value.load(std::memory_order_acquire); }
	// Those named post... return the number from before.
	T increment() { return postincrement() + 1; }
	T postincrement() { return value.fetch_add(1, std::memory_order_acq_rel); }
	T decrement() { return postdecrement() - 1; }
	T postdecrement() { return value.fetch_sub(1, std::memory_order_acq_rel); }
	T add(T number) { return postadd(number) + number; }
	T postadd(T number) { return value.fetch_add(number, std::memory_order_acq_rel); }
	T sub(T number) { return postsub(number) - number; }
	T postsub(T number) { return value.fetch_sub(number, std::memory_order_acq_rel); }
	T bit_or(T number) { return value.fetch_or(number, std::memory_order_acq_rel) | number; }
	T bit_and(T number) { return value.fetch_and(number, std::memory_order_acq_rel) & number; }

	T exchange_if_greater(T number) {
		T current = get();
		while (current < number) {
			if (value.compare_exchange_weak(current, number, std::memory_order_acq_rel)) {
				return number;
			}
		}
		return current;
	}
	// 0 stays 0, and says that nothing was counted.
	T conditional_increment() {
		T current = get();
		while (current != 0) {
			if (value.compare_exchange_weak(current, current + 1, std::memory_order_acq_rel)) {
				return current + 1;
			}
		}
		return 0;
	}
};

class SafeFlag {
	std::atomic_bool flag;

public:
	explicit SafeFlag(bool initial = false) :
			flag(initial) {}

	bool is_set() const { return flag.load(std::memory_order_acquire); }
	void set() { set_to(true); }
	void clear() { set_to(false); }
	void set_to(bool value) { flag.store(value, std::memory_order_release); }
};

class SafeRefCount {
	SafeNumeric<uint32_t> count;

public:
	// False once the count has been at zero: what it counted is on its way out.
	bool ref() { return count.conditional_increment() != 0; }
	uint32_t refval() { return count.conditional_increment(); }
	// True for the last user, who frees what was counted.
	bool unref() { return count.decrement() == 0; }
	uint32_t unrefval() { return count.decrement(); }
	uint32_t get() const { return count.get(); }
	void init(uint32_t value = 1) { count.set(value); }
};

} // namespace godot

#endif // GODOT_CPP_TEMPLATES_SAFE_REFCOUNT_HPP
