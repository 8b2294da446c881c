#include "kinds/scene/dungeon.hpp"

#include "action/shared_verbs.hpp"
#include "settings/hints.hpp"

void SCBuildDungeonAction::describe(KindTable<Self> &kind) {
	kind.about("scene", "build_dungeon", "Build a floor of rooms with a new layout every run, made from rooms you draw by hand.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::start_room>("start_room",
			"The room the player starts in. A node called PlayerStart in it says where. Every room is a scene of the same size, with nodes called DoorNorth, "
			"DoorSouth, DoorEast and DoorWest in the middle of its sides. A door's own Machine reads the variables connected and secret, and the room's own "
			"room_kind and room_cell.");
	kind.setting<&Self::fight_rooms>("fight_rooms", "The rooms to fight in. One of them is picked at random for each.");
	kind.setting<&Self::fight_room_count>("fight_room_count", hint::HOW_MANY, "How many rooms to fight in the floor has.");
	kind.setting<&Self::boss_room>("boss_room", "The room that lies as far from the start as the floor allows. Empty leaves it out.").optional();
	kind.setting<&Self::treasure_room>("treasure_room", "A room with one way in, off the other rooms. Empty leaves it out.").optional();
	kind.setting<&Self::shop_room>("shop_room", "Another room with one way in. Empty leaves it out.").optional();
	kind.setting<&Self::secret_room>(
				"secret_room", "A room tucked between others and joined to each of them, behind doors whose variable secret is true. Empty leaves it out.")
			.optional();
	kind.setting<&Self::room_size>("room_size", "How wide and high a room is, in pixels, and so how far apart the rooms are put.");
	kind.setting<&Self::parent_path>("parent_path", "The node that the rooms go under. Empty is the scene being played.");
	kind.setting<&Self::floor_seed>(
			"floor_seed", "The same number builds the same floor, also in another version of the engine. Zero builds a new one every time.");
	kind.setting<&Self::store_seed_in>("store_seed_in", "Keep the number that the floor was built from in this variable, to build it again later.").optional();
	kind.setting<&Self::player_path>("player_path", "The player, who is put into the start room. Empty moves nobody.").optional();
	kind.setting<&Self::built_event>("built_event", "The event to send when the floor is built.").optional();
	kind.warns<&Self::warn_dungeon>("_warn_dungeon", "machine", "index", "code", "extra");
}

String SCBuildDungeonAction::summary_default() {
	const struct {
		const Ref<PackedScene> &room;
		const char *words;
	} extras[] = {
		{ boss_room, "a boss" },
		{ treasure_room, "treasure" },
		{ shop_room, "a shop" },
		{ secret_room, "a secret room" },
	};
	PackedStringArray has;
	for (const auto &extra : extras) {
		if (extra.room.is_valid()) {
			has.push_back(extra.words);
		}
	}
	String what = vformat("a floor of %d fight rooms", fight_room_count);
	if (!has.is_empty()) {
		what += " with " + String(", ").join(has);
	}
	const String from = floor_seed != 0 ? vformat(" from seed %d", floor_seed) : String();
	if (player_path.is_empty()) {
		return vformat("Build %s%s", what, from);
	}
	return vformat("Build %s%s, %s starting in it", what, from, words::name_in_line(player_path));
}

void SCBuildDungeonAction::warn_dungeon(SCMachineBase *machine, int64_t, int64_t code, const String &extra) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	String text;
	switch (code) {
		case NO_START_ROOM:
			text = vformat("Build Dungeon on %s has no Start Room, so no floor is built. Pick the room the player starts in.", name);
			break;
		case NO_FIGHT_ROOMS:
			text = vformat("Build Dungeon on %s: %s, so no floor is built. Add the rooms to fight in under Fight Rooms.", name, extra);
			break;
		case NO_PARENT:
			text = vformat("Build Dungeon on %s: %s, so there is nowhere to put the rooms and no floor is built.", name, extra);
			break;
		default:
			text = vformat("Build Dungeon on %s: %s, so the player is not moved to the start room.", name, extra);
			break;
	}
	verbs::warn_whole(machine, this, int(code), text);
}
