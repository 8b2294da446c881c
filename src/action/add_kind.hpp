#pragma once

// How a kind gets into the library. The file of its runtime says which kinds it holds and what runs each; nothing else
// lists them:
//
//	const AddKinds added = {
//		add_kind<SCChaseAction, Chase>(),
//		add_condition<SCCanSeeCondition, &can_see>(),
//	};
//
// That runs as the library is loaded, before the engine may be called, so it only links entries that are there already.
// Registration then goes through them by name.

#include "action/kind_table.hpp"
#include "action/sc_native_actions.hpp"

#include <functional>
#include <initializer_list>

struct KindEntry {
	StringName (*class_name)();
	void (*register_class)();
	void (*add_runtime)();
	KindEntry *next = nullptr;
};

template <class Kind>
struct KindEntryOf {
	static StringName class_name() { return Kind::get_class_static(); }
	static void register_class() { ClassDB::register_class<Kind>(); }

	template <class Runtime>
	static void add_runtime() {
		SCNativeActions::add<Runtime>(KindOf<Kind>::row->word, KindOf<Kind>::row->script_path);
	}
	template <NativeCondition Check>
	static void add_check() {
		SCNativeActions::add_condition(KindOf<Kind>::row->script_path, Check);
	}

	template <class Runtime>
	inline static KindEntry with_runtime = { &class_name, &register_class, &add_runtime<Runtime> };
	template <NativeCondition Check>
	inline static KindEntry with_check = { &class_name, &register_class, &add_check<Check> };
};

template <class Kind, class Runtime>
KindEntry &add_kind() {
	return KindEntryOf<Kind>::template with_runtime<Runtime>;
}

template <class Kind, NativeCondition Check>
KindEntry &add_condition() {
	return KindEntryOf<Kind>::template with_check<Check>;
}

class AddKinds {
	static KindEntry *first;

public:
	AddKinds(std::initializer_list<std::reference_wrapper<KindEntry>> entries) noexcept;

	// Wait first and Assert last, the rest by name.
	static LocalVector<KindEntry *> in_order();
};

void register_kinds();
