#pragma once

// The kind that builds a floor of rooms.

#include "action/kind_table.hpp"

#include <godot_cpp/classes/packed_scene.hpp>

class SCBuildDungeonAction : public SCMachineAction {
	SC_KIND(SCBuildDungeonAction, SCMachineAction)

public:
	enum Wrong : int64_t {
		NO_START_ROOM,
		NO_FIGHT_ROOMS,
		NO_PARENT,
		NO_PLAYER,
	};

	Ref<PackedScene> start_room;
	TypedArray<PackedScene> fight_rooms;
	int64_t fight_room_count = 6;
	Ref<PackedScene> boss_room;
	Ref<PackedScene> treasure_room;
	Ref<PackedScene> shop_room;
	Ref<PackedScene> secret_room;
	Vector2 room_size = Vector2(480, 288);
	NodePath parent_path;
	int64_t floor_seed = 0;
	StringName store_seed_in;
	NodePath player_path;
	StringName built_event;

	// `extra` is what is wrong about it, where that can be more than one thing.
	void warn_dungeon(SCMachineBase *machine, int64_t index, int64_t code, const String &extra);

	String summary_default() override;
};
