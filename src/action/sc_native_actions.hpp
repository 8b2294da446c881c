#pragma once

// The contract of compiled runtimes: what a kind does when it runs. One stateless object per kind
// serves every action of that kind in every machine; what an action remembers lies in the machine's
// slot for it. The tables pair a kind's word and script with its runtime.

#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <type_traits>

using namespace godot;

class SCMachineAction;
class SCMachineBase;
class SCMachineCondition;

class SCNativeAction {
public:
	virtual ~SCNativeAction() = default;
	virtual void enter(SCMachineBase *machine, SCMachineAction *action, int index);
	virtual void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta);
	virtual void exit(SCMachineBase *machine, SCMachineAction *action, int index);
	// Work the machine sends back later; `what` tells which.
	virtual void other(SCMachineBase *machine, SCMachineAction *action, int index, int what);
	// In place of `enter` in a game that goes on from where it was saved, with the slot as it was then. False for one that
	// is to be taken up the way all are.
	virtual bool take_up(SCMachineBase *machine, SCMachineAction *action, int index);
};

// A runtime and which of its operations do anything: a do-nothing one is not called.
struct NativeEntry {
	SCNativeAction *runtime = nullptr;
	bool has_update = false;
	bool has_exit = false;
	bool has_other = false;
	// Finished as soon as it is entered, it goes on holding something until it is left.
	bool holds = false;
};

using NativeCondition = bool (*)(SCMachineBase *machine, SCMachineCondition *condition);
using NativeHelper = Variant (*)(const Array &arguments);

class SCNativeActions {
public:
	// The runtime of any action object, by its script, else by its class; null when it has none.
	static const NativeEntry *of_action(Object *action);
	static const NativeEntry *of_word(const StringName &word);
	static NativeCondition of_condition(Object *condition);
	static bool has_helper(const StringName &name);
	static Variant call_helper(const StringName &name, const Array &arguments);
	// Runs one operation of an action's runtime: 0 enter, 1 update, 2 exit, anything else the sixth slot.
	static void call(int what, Object *action, Object *machine, int index, double delta);

	// Called by each file of natives, for every kind it holds.
	template <class Runtime>
	static void add(const StringName &word, const String &script_path) {
		NativeEntry entry;
		entry.runtime = new_runtime<Runtime>();
		entry.has_update = !std::is_same_v<decltype(&Runtime::update), decltype(&SCNativeAction::update)>;
		entry.has_exit = !std::is_same_v<decltype(&Runtime::exit), decltype(&SCNativeAction::exit)>;
		entry.has_other = !std::is_same_v<decltype(&Runtime::other), decltype(&SCNativeAction::other)>;
		entry.holds = holds_something<Runtime>(0);
		add_entry(word, script_path, entry);
	}
	static void add_condition(const String &script_path, NativeCondition check);
	static void add_helper(const StringName &name, NativeHelper helper);
	static void free_shared();

private:
	// A runtime says so by `static constexpr bool HOLDS = true`.
	template <class Runtime>
	static constexpr auto holds_something(int) -> decltype(Runtime::HOLDS) {
		return Runtime::HOLDS;
	}
	template <class Runtime>
	static constexpr bool holds_something(...) {
		return false;
	}
	template <class Runtime>
	static SCNativeAction *new_runtime() {
		static Runtime stateless;
		return &stateless;
	}
	static void add_entry(const StringName &word, const String &script_path, const NativeEntry &entry);
};

// Every file of natives registers what it holds; called once, before the first lookup.
void register_all_natives();
