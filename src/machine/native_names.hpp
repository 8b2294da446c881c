#pragma once

// The names that a file of natives reads, calls and remembers by. A file keeps them in one struct, made
// at the first use and freed with everyone else's when the library is unloaded:
//
//	struct Names {
//		StringName held = "held";
//	};
//	slot[NativeNames::of<Names>().held] = 0.0;

#include <godot_cpp/core/memory.hpp>

using namespace godot;

class NativeNames {
	template <class Names>
	inline static Names *made = nullptr;

	static void free_later(void (*free_one)());
	template <class Names>
	static void free_one() {
		memdelete(made<Names>);
		made<Names> = nullptr;
	}

public:
	template <class Names>
	static const Names &of() {
		if (made<Names> == nullptr) {
			made<Names> = memnew(Names);
			free_later(&free_one<Names>);
		}
		return *made<Names>;
	}
	static void free_shared();
};
