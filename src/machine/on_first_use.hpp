#pragma once

// A value that is made when it is first wanted. Most machines never use most of what a machine may
// hold, and even an empty Array or Dictionary of the engine costs an allocation.

#include <optional>

template <class T>
class OnFirstUse {
	mutable std::optional<T> made;

public:
	OnFirstUse() = default;
	OnFirstUse(const T &value) : made(value) {}
	OnFirstUse &operator=(const T &value) {
		// The destructor of the former value can call user code, which must find the new one here.
		std::optional<T> former(value);
		made.swap(former);
		return *this;
	}

	// Whether there is anything in it that could be looked at.
	bool is_made() const { return made.has_value(); }
	const T &get() const {
		if (!made.has_value()) {
			made.emplace();
		}
		return *made;
	}
	T &get() {
		if (!made.has_value()) {
			made.emplace();
		}
		return *made;
	}
	operator const T &() const { return get(); }
	const T *operator->() const { return &get(); }
	T *operator->() { return &get(); }
	void forget() {
		std::optional<T> former;
		made.swap(former);
	}
};
