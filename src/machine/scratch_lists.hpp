#pragma once

// Lists that a pass over the rows copies into, reused by nesting depth, so that neither a tick nor
// an event allocates once a machine has warmed up.

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

		explicit Borrowed(ScratchLists &lists) :
				from(lists), list(lists.next()) {}
		~Borrowed() { from.depth--; }
		Borrowed(const Borrowed &) = delete;
		Borrowed &operator=(const Borrowed &) = delete;
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
