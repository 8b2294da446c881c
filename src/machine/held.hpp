#pragma once

// Holds on to a record that several share, for as long as any of them does. A record counts its holders
// itself, in a member `holders` that begins at 0.

#include <godot_cpp/core/memory.hpp>

#include <utility>

using namespace godot;

template <class T>
class Held {
	T *record = nullptr;

public:
	Held() = default;
	explicit Held(T *held) : record(held) {
		if (record != nullptr) {
			record->holders++;
		}
	}
	Held(const Held &other) : Held(other.record) {}
	Held &operator=(const Held &other) {
		if (this != &other) {
			Held fresh(other);
			std::swap(record, fresh.record);
		}
		return *this;
	}
	~Held() { let_go(); }

	// The destructor of what a record holds can call user code, which must find this let go of already.
	void let_go() {
		T *former = record;
		record = nullptr;
		if (former != nullptr && --former->holders == 0) {
			memdelete(former);
		}
	}
	bool is_valid() const { return record != nullptr; }
	T *ptr() const { return record; }
	T *operator->() const { return record; }
};
