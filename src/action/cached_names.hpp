#pragma once

// The names that one file of runtimes reads and remembers by: a struct of StringNames, made at its first
// use and freed when the library is unloaded, so that no name is built on a tick.
//
//	struct TimerNames {
//		StringName left = "left";
//	};
//	const TimerNames &names = CachedNames::of<TimerNames>();

#include <godot_cpp/core/memory.hpp>

class CachedNames {
	using Free = void (*)();

	template <class Names>
	struct Holder {
		inline static Names *names = nullptr;
		static void free() {
			memdelete(names);
			names = nullptr;
		}
	};

	static void free_with_the_library(Free free);

public:
	template <class Names>
	static const Names &of() {
		if (Holder<Names>::names == nullptr) {
			Holder<Names>::names = memnew(Names);
			free_with_the_library(&Holder<Names>::free);
		}
		return *Holder<Names>::names;
	}
	static void free_shared();
};
