#pragma once

// A list that keeps its first few elements in itself: what a machine walks through in every frame then
// lies beside what it has just read, and most lists never allocate. For plain values only, such as
// pointers and numbers. Clearing keeps the room.

#include <godot_cpp/core/memory.hpp>

#include <cstdint>
#include <type_traits>

using namespace godot;

template <class T, uint32_t INLINE>
class InlineList {
	static_assert(std::is_trivially_copyable_v<T>, "Elements are moved as bytes.");

	uint32_t count = 0;
	uint32_t room = INLINE;
	union {
		T own[INLINE];
		T *apart;
	};

	bool is_apart() const { return room > INLINE; }
	T *elements() { return is_apart() ? apart : own; }
	const T *elements() const { return is_apart() ? apart : own; }

	void grow(uint32_t wanted) {
		uint32_t larger = room * 2;
		while (larger < wanted) {
			larger *= 2;
		}
		// NOLINTNEXTLINE(bugprone-sizeof-expression): the elements may well be pointers.
		T *fresh = static_cast<T *>(memalloc(sizeof(T) * larger));
		for (uint32_t i = 0; i < count; i++) {
			fresh[i] = elements()[i];
		}
		if (is_apart()) {
			memfree(apart);
		}
		apart = fresh;
		room = larger;
	}

public:
	InlineList() : own{} {}
	~InlineList() {
		if (is_apart()) {
			memfree(apart);
		}
	}
	InlineList(const InlineList &) = delete;
	InlineList &operator=(const InlineList &) = delete;

	uint32_t size() const { return count; }
	bool is_empty() const { return count == 0; }
	void clear() { count = 0; }
	void push_back(T element) {
		if (count == room) {
			grow(count + 1);
		}
		elements()[count++] = element;
	}
	// New elements are zero.
	void resize(uint32_t size) {
		if (size > room) {
			grow(size);
		}
		for (uint32_t i = count; i < size; i++) {
			elements()[i] = T();
		}
		count = size;
	}

	// The index has to be within the list.
	T &operator[](uint32_t index) { return elements()[index]; }
	const T &operator[](uint32_t index) const { return elements()[index]; }
	T *begin() { return elements(); }
	T *end() { return elements() + count; }
	const T *begin() const { return elements(); }
	const T *end() const { return elements() + count; }
};
