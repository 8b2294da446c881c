#pragma once

// The kind that puts items down as a pickup.

#include "action/kind_table.hpp"
#include "settings/hints.hpp"

#include <godot_cpp/classes/packed_scene.hpp>

class SCDropItemAction : public SCMachineAction {
	SC_KIND(SCDropItemAction, SCMachineAction)

public:
	enum Wrong : int64_t {
		NO_BAG,
		NO_ITEM,
		NO_SCENE,
		NO_BAG_IN_IT,
		NO_PLACE,
	};

	Ref<Resource> item;
	StringName item_variable;
	NodePath bag_path;
	int64_t how_many = 1;
	StringName how_many_variable;
	Ref<PackedScene> pickup_scene;
	NodePath at_path;
	Variant offset;
	StringName store_pickup_in;
	StringName dropped_event;
	StringName cannot_event;

	// `about` is why there is no item, the item's name, or that of the pickup.
	void warn(SCMachineBase *machine, int64_t index, int64_t what, const String &about);

	String summary_default() override;
};
