#pragma once

// Lists that a pass over the rows copies into, reused by nesting depth, so that neither a tick nor
// an event allocates once it has warmed up. All machines borrow the same ones: what thousands of
// them copy into in a frame then stays where the processor finds it.

#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/templates/local_vector.hpp>

using namespace godot;

template <class T>
class ScratchLists {
	LocalVector<LocalVector<T> *> lists;
	uint32_t depth = 0;

public:
	~ScratchLists() {
		for (LocalVector<T> *list : lists) {
			memdelete(list);
		}
	}

	// Borrows the list of the next depth for as long as it lives.
	class Borrowed {
		ScratchLists &from;

	public:
		LocalVector<T> &list;

		explicit Borrowed(ScratchLists &lists) : from(lists), list(lists.next()) {}
		~Borrowed() { from.depth--; }
		Borrowed(const Borrowed &) = delete;
		Borrowed &operator=(const Borrowed &) = delete;
	};

	// A copy of a list for the length of a pass. A short one lies on the stack; only a long one borrows.
	template <class List>
	class Copy {
		static constexpr uint32_t SHORT = 8;
		T own[SHORT];
		const T *first = own;
		uint32_t count = 0;
		ScratchLists *lent_by = nullptr;

	public:
		Copy(ScratchLists &lists, const List &list) : count(list.size()) {
			// By far the most lists that a frame goes through hold one.
			if (count == 1) {
				own[0] = list[0];
				return;
			}
			T *into = own;
			if (count > SHORT) {
				LocalVector<T> &borrowed = lists.next();
				borrowed.resize(count);
				into = borrowed.ptr();
				first = into;
				lent_by = &lists;
			}
			for (uint32_t i = 0; i < count; i++) {
				into[i] = list[i];
			}
		}
		~Copy() {
			if (lent_by != nullptr) {
				lent_by->depth--;
			}
		}
		Copy(const Copy &) = delete;
		Copy &operator=(const Copy &) = delete;

		const T *begin() const { return first; }
		const T *end() const { return first + count; }
	};

private:
	LocalVector<T> &next() {
		if (depth == lists.size()) {
			lists.push_back(memnew(LocalVector<T>));
		}
		LocalVector<T> *list = lists[depth++];
		list->clear();
		return *list;
	}
};

struct RunRow;

namespace godot {
class Resource;
}

struct RunScratch {
	ScratchLists<RunRow *> rows;
	ScratchLists<int> actions;
	ScratchLists<Resource *> states;

	static RunScratch &shared() {
		if (made == nullptr) {
			made = memnew(RunScratch);
		}
		return *made;
	}
	static void free_shared() {
		if (made != nullptr) {
			memdelete(made);
			made = nullptr;
		}
	}

private:
	inline static RunScratch *made = nullptr;
};
