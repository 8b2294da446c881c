#pragma once

// Kinds of the items category by which things are put on and taken off.

#include "action/kind_table.hpp"
#include "settings/hints.hpp"

class SCEquipItemAction : public SCMachineAction {
	SC_KIND(SCEquipItemAction, SCMachineAction)

public:
	enum Wrong : int64_t {
		NOTHING_TO_WEAR,
		NO_SLOT_OF_ITS_OWN,
		NO_SUCH_SLOT,
		NOBODY,
	};

	Ref<Resource> item;
	StringName item_variable;
	NodePath worn_path;
	NodePath from_path;
	NodePath on_path;
	StringName equipped_event;
	StringName cannot_event;

	// `worn_side` tells which inventory is missing. `about` is what is wrong, the item's name; `bag` that of the inventory.
	void warn(SCMachineBase *machine, int64_t index, int64_t what, bool worn_side, const String &about, const String &bag);

	String summary_default() override;
};

class SCUnequipItemAction : public SCMachineAction {
	SC_KIND(SCUnequipItemAction, SCMachineAction)

public:
	enum Wrong : int64_t {
		NO_BAG,
		NO_SLOT,
		NO_SUCH_SLOT,
		NOBODY,
	};

	Ref<Resource> item;
	StringName item_variable;
	NodePath worn_path;
	NodePath to_path;
	StringName slot;
	NodePath on_path;
	StringName taken_off_event;
	StringName cannot_event;

	// `worn_side` tells which inventory is missing. `about` is what is wrong, or the slot; `bag` is the inventory's name, and `names`
	// are its slots.
	void warn(SCMachineBase *machine, int64_t index, int64_t what, bool worn_side, const String &about, const String &bag, const Array &names);

	String summary_default() override;
};
