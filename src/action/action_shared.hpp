#pragma once

// What the framework of kinds keeps for the whole process: its names, and what it has found out per
// kind. Made at the first use, by whichever thread that is on, and freed when the library is unloaded.

#include "action/kind.hpp"

#include <godot_cpp/classes/reg_ex.hpp>
#include <godot_cpp/templates/hash_set.hpp>
#include <godot_cpp/variant/node_path.hpp>

using namespace godot;

// The settings of a kind that can be read from a variable.
struct KindTwins {
	LocalVector<StringName> settings;
	LocalVector<StringName> twins;
	HashMap<StringName, StringName> setting_of_twin;
	HashMap<StringName, StringName> twin_of_setting;
};

// The settings of a kind that name variables and events, told by their own names.
struct KindNames {
	LocalVector<StringName> read;
	LocalVector<StringName> written;
	LocalVector<StringName> events;
	LocalVector<StringName> event_lists;
};

struct AnyTypeSettings {
	HashSet<StringName> names;
};

struct ActionShared {
	StringName action_base = "SCMachineAction";
	StringName condition_base = "SCMachineCondition";
	StringName run_mode = "run_mode";
	StringName run_mode_saved = "run_mode_saved";
	StringName display_name = "display_name";
	StringName input_action = "input_action";
	StringName variable_name = "variable_name";
	StringName list_variable = "list_variable";
	StringName progress_variable = "progress_variable";
	StringName event_name = "event_name";
	StringName events = "events";
	StringName condition = "condition";
	StringName summary = "summary";
	StringName optional_names = "optional_names";
	StringName invert = "invert";
	StringName machine = "machine";
	StringName changed = "changed";
	StringName script_changed = "script_changed";

	NodePath no_node = NodePath("__no_node__");
	String not_picked = "(pick one)";
	// What every action has and a variable has no say in.
	HashSet<StringName> the_machines_own;

	PerKind<KindTwins> twins;
	PerKind<KindNames> naming;
	PerKind<AnyTypeSettings> any_type;
	// Keeps every name it was asked about, so that no other name can come to lie at the same address.
	HashMap<StringName, bool> ends_in_variable;
	std::mutex ends_in_variable_lock;
	HashSet<String> said_cannot_fit;
	HashMap<String, Ref<RegEx>> patterns;
	// What the editor edits at this moment: -1 unknown, 1 a 2D scene, anything else not.
	int64_t shown_on_2d = -1;

	ActionShared();
	const Ref<RegEx> &pattern(const String &text);

	static ActionShared &get();
	static void free_shared();
	// Goes up when everything is freed, for what threads remember on their own.
	static uint32_t generation();
};
