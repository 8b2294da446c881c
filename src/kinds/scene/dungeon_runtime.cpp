// The compiled runtime of Build Dungeon.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/weak.hpp"
#include "kinds/scene/dungeon.hpp"
#include "machine/native_names.hpp"
#include "machine_node/sc_machine.hpp"
#include "space/newcomers.hpp"

#include <godot_cpp/classes/collision_object2d.hpp>
#include <godot_cpp/classes/engine.hpp>
#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/physics_body2d.hpp>
#include <godot_cpp/classes/physics_server2d.hpp>
#include <godot_cpp/classes/random_number_generator.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/variant/callable_method_pointer.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

using Kind = SCBuildDungeonAction;

// What a game can still bear to have made in one frame.
constexpr int64_t MOST_FIGHT_ROOMS = 1000;
constexpr int64_t LARGEST_NEW_SEED = 999999;
// So that the choice of rooms does not follow the draws of the layout.
constexpr int64_t OTHER_DRAWS = 7919;

struct Names {
	StringName script = "quillstead_dungeon";
	StringName cells = "cells";
	StringName joins = "joins";
	StringName secret_ways = "secret";
	StringName sides = "SIDES";
	StringName lay_out = "lay_out";
	StringName remember = "remember";
	StringName key = "_key";
	StringName room_kind = "room_kind";
	StringName room_cell = "room_cell";
	StringName connected = "connected";
	StringName secret = "secret";
	NodePath player_start = NodePath("PlayerStart");
	String player_start_name = "PlayerStart";
	String start = "start";
	String fight = "fight";
	String boss = "boss";
	String treasure = "treasure";
	String shop = "shop";
	String extra_secret = "secret";
};

const Names &names() {
	return NativeNames::of<Names>();
}

bool is_building = false;
// The frame of the last floor, whose rooms may still be waiting to join their parent until it is over.
uint64_t built_in_frame = 0;

uint64_t this_frame() {
	const Engine *engine = Engine::get_singleton();
	return engine->get_process_frames() + engine->get_physics_frames();
}

// The rooms come in while their own nodes' code runs, which may ask for another floor.
class WhileBuilding {
public:
	WhileBuilding() { is_building = true; }
	~WhileBuilding() { is_building = false; }
	WhileBuilding(const WhileBuilding &) = delete;
	WhileBuilding &operator=(const WhileBuilding &) = delete;
};

Ref<PackedScene> as_scene(const Variant &value) {
	return Ref<PackedScene>(Object::cast_to<PackedScene>(value.get_validated_object()));
}

// Null for what nothing can be made of.
Node *made_of(const Ref<PackedScene> &scene) {
	return scene.is_valid() && scene->can_instantiate() ? scene->instantiate() : nullptr;
}

void hand(SCMachine *machine, const StringName &name, const Variant &value) {
	Dictionary handed = Dictionary(machine->get_handed_values()).duplicate();
	handed[name] = value;
	machine->set_handed_values(handed);
}

// The physics would put a body back to where it stood when the frame began.
void settle(int64_t body_id) {
	const PhysicsBody2D *body = Object::cast_to<PhysicsBody2D>(ObjectDB::get_instance(uint64_t(body_id)));
	PhysicsServer2D *physics = PhysicsServer2D::get_singleton();
	if (body == nullptr || physics->body_get_mode(body->get_rid()) != PhysicsServer2D::BODY_MODE_KINEMATIC) {
		return;
	}
	physics->body_set_mode(body->get_rid(), PhysicsServer2D::BODY_MODE_STATIC);
	physics->body_set_mode(body->get_rid(), PhysicsServer2D::BODY_MODE_KINEMATIC);
	physics->body_set_state(body->get_rid(), PhysicsServer2D::BODY_STATE_TRANSFORM, body->get_global_transform());
}

void settle_all(Node *node) {
	if (CollisionObject2D *solid = Object::cast_to<CollisionObject2D>(node)) {
		solid->force_update_transform();
		// In the middle of a physics frame a body's mode cannot be changed.
		if (Engine::get_singleton()->is_in_physics_frame()) {
			callable_mp_static(&settle).call_deferred(int64_t(solid->get_instance_id()));
		} else {
			settle(int64_t(solid->get_instance_id()));
		}
	}
	for (int i = 0; i < node->get_child_count(); i++) {
		settle_all(node->get_child(i));
	}
}

// One floor, from the settings to the event. What a room's own code does meanwhile leaves it whole.
class Floor {
	SCMachineBase *machine;
	Ref<SCMachineAction> action;
	int index;
	StillHere here;
	Weak<SCMachineBase> still;
	Ref<PackedScene> start_room;
	LocalVector<Ref<PackedScene>> fight_rooms;
	Ref<PackedScene> boss_room;
	Ref<PackedScene> treasure_room;
	Ref<PackedScene> shop_room;
	Ref<PackedScene> secret_room;
	Vector2 room_size;
	Weak<Node> parent;
	int64_t seed = 0;
	Ref<RandomNumberGenerator> random;
	Dictionary layout;
	Dictionary sides;
	Dictionary connected;
	Dictionary behind_secret;
	// By cell, the id of the room.
	Dictionary built;

	void wrong(Kind::Wrong what, const String &about = String()) { verbs::say<&Kind::warn_dungeon>(action.ptr(), machine, index, what, about); }
	static Variant ask(const StringName &method, const Array &arguments) { return CompanionScripts::call(names().script, method, arguments); }

	// False, and the game maker told, when there are not all of the rooms.
	bool read_rooms() {
		start_room = setting_of<&Kind::start_room>(action.ptr());
		if (start_room.is_null()) {
			wrong(Kind::NO_START_ROOM);
			return false;
		}
		const Array rooms = setting_of<&Kind::fight_rooms>(action.ptr());
		for (int64_t i = 0; i < rooms.size(); i++) {
			const Ref<PackedScene> room = as_scene(rooms[i]);
			if (room.is_null()) {
				wrong(Kind::NO_FIGHT_ROOMS, "one of the Fight Rooms is empty");
				return false;
			}
			fight_rooms.push_back(room);
		}
		if (fight_rooms.is_empty()) {
			wrong(Kind::NO_FIGHT_ROOMS, "Fight Rooms is empty");
			return false;
		}
		boss_room = setting_of<&Kind::boss_room>(action.ptr());
		treasure_room = setting_of<&Kind::treasure_room>(action.ptr());
		shop_room = setting_of<&Kind::shop_room>(action.ptr());
		secret_room = setting_of<&Kind::secret_room>(action.ptr());
		return true;
	}

	bool find_parent() {
		const NodePath path = setting_of<&Kind::parent_path>(action.ptr());
		Node *found = path.is_empty() ? machine->get_tree()->get_current_scene() : values::node_of(machine, path);
		if (found == nullptr) {
			wrong(Kind::NO_PARENT, path.is_empty() ? "the game has no current scene" : "Parent points at nothing");
			return false;
		}
		parent = Weak<Node>(found);
		return true;
	}

	void read_size() {
		room_size = setting_of<&Kind::room_size>(action.ptr());
		if (!checked::is_sound(room_size) || room_size.x <= 0.0 || room_size.y <= 0.0) {
			Ref<Kind> untouched;
			untouched.instantiate();
			const Vector2 usual = untouched->room_size;
			verbs::warn(machine, action.ptr(),
					vformat("Room Size is %s, which leaves no room for a room, so it is taken as %s. Type in how wide and high your rooms are.",
							Variant(room_size).stringify(), Variant(usual).stringify()));
			room_size = usual;
		}
	}

	int64_t fight_room_count() {
		const int64_t asked = setting_of<&Kind::fight_room_count>(action.ptr());
		const int64_t taken = CLAMP(asked, int64_t(1), MOST_FIGHT_ROOMS);
		if (asked != taken) {
			verbs::warn(machine, action.ptr(),
					vformat("Fight Room Count is %d, so the floor has %d. Type in a number from 1 to %d.", asked, taken, MOST_FIGHT_ROOMS));
		}
		return taken;
	}

	static Node *room_of(const Variant &entry) {
		const Array kept = entry.get_type() == Variant::ARRAY ? Array(entry) : Array();
		return kept.size() > 1 ? Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(int64_t(kept[1])))) : nullptr;
	}
	static Array floor_before() {
		const Ref<Script> script = CompanionScripts::script(names().script);
		const Variant cells = script.is_valid() ? script->get(names().cells) : Variant();
		return cells.get_type() == Variant::DICTIONARY ? Dictionary(cells).values() : Array();
	}

	bool would_go_with_the_floor_before() {
		const Array before = floor_before();
		for (int64_t i = 0; i < before.size(); i++) {
			const Node *room = room_of(before[i]);
			if (room != nullptr && (room == parent.get() || room->is_ancestor_of(parent.get()))) {
				verbs::warn(machine, action.ptr(),
						vformat("%s lies in a room of the floor that would be replaced, and the new rooms would go with it, so no floor is built. Pick a "
								"Parent "
								"outside of the rooms.",
								parent.get()->get_name()));
				return true;
			}
		}
		return false;
	}

	// Their names are free at once, and they go when the frame's calls are done.
	static void clear_floor_before() {
		const Array before = floor_before();
		for (int64_t i = 0; i < before.size(); i++) {
			const Weak<Node> room(room_of(before[i]));
			if (room.get() == nullptr) {
				continue;
			}
			const bool is_waiting = room.get()->get_parent() == nullptr && built_in_frame == this_frame();
			if (!room.get()->is_inside_tree() && !is_waiting) {
				continue;
			}
			room.get()->set_name(vformat("Leaving %d", int64_t(room.get()->get_instance_id())));
			if (room.get() != nullptr) {
				room.get()->queue_free();
			}
		}
	}

	bool lay_out(int64_t fights) {
		PackedStringArray extras;
		if (boss_room.is_valid()) {
			extras.push_back(names().boss);
		}
		if (treasure_room.is_valid()) {
			extras.push_back(names().treasure);
		}
		if (shop_room.is_valid()) {
			extras.push_back(names().shop);
		}
		const Variant answer = ask(names().lay_out, Array::make(seed, fights, extras, secret_room.is_valid()));
		const Variant known_sides = CompanionScripts::constant(names().script, names().sides);
		if (answer.get_type() != Variant::DICTIONARY || known_sides.get_type() != Variant::DICTIONARY) {
			verbs::warn(machine, action.ptr(), "quillstead_dungeon.gd lays out no floor, so none is built. Put the addon's own file back.");
			return false;
		}
		layout = answer;
		sides = known_sides;
		note_ways(layout.get(names().joins, Variant()), false);
		note_ways(layout.get(names().secret_ways, Variant()), true);
		return true;
	}

	void note_ways(const Variant &listed, bool is_secret) {
		const Array ways = listed.get_type() == Variant::ARRAY ? Array(listed) : Array();
		for (int64_t i = 0; i < ways.size(); i++) {
			const Array way = ways[i].get_type() == Variant::ARRAY ? Array(ways[i]) : Array();
			if (way.size() != 2) {
				continue;
			}
			const Variant key = ask(names().key, way);
			connected[key] = true;
			if (is_secret) {
				behind_secret[key] = true;
			}
		}
	}

	Ref<PackedScene> scene_for(const String &kind) {
		const Names &known = names();
		if (kind == known.fight) {
			return fight_rooms[uint32_t(random->randi_range(0, int32_t(fight_rooms.size()) - 1))];
		}
		const struct {
			const String &word;
			const Ref<PackedScene> &scene;
		} others[] = {
			{ known.start, start_room },
			{ known.boss, boss_room },
			{ known.treasure, treasure_room },
			{ known.shop, shop_room },
			{ known.extra_secret, secret_room },
		};
		for (const auto &other : others) {
			if (kind == other.word) {
				return other.scene;
			}
		}
		return Ref<PackedScene>();
	}

	void set_up_doors(Node *room, const Vector2i &cell) {
		const Array words = sides.keys();
		for (int64_t i = 0; i < words.size(); i++) {
			const String side = words[i];
			SCMachine *door = SCMachine::machine_of(room->get_node_or_null(NodePath("Door" + side.capitalize())));
			if (door == nullptr) {
				continue;
			}
			const Variant key = ask(names().key, Array::make(cell, cell + Vector2i(sides[side])));
			hand(door, names().connected, connected.has(key));
			hand(door, names().secret, behind_secret.has(key));
		}
	}

	void warn_no_room(const String &kind) {
		if (SCMachineBase *told = still.get()) {
			verbs::warn(
					told, action.ptr(), vformat("nothing can be made of a scene for a %s room, so its place stays empty. Pick another scene for it.", kind));
		}
	}

	void build_room(const Vector2i &cell, const String &kind) {
		const Ref<PackedScene> scene = scene_for(kind);
		if (scene.is_null()) {
			return;
		}
		const Weak<Node> room(made_of(scene));
		if (room.get() == nullptr) {
			warn_no_room(kind);
			return;
		}
		room.get()->set_name(vformat("Room %d,%d", cell.x, cell.y));
		if (Node2D *placed = Object::cast_to<Node2D>(room.get())) {
			placed->set_position(Vector2(cell) * room_size);
		}
		if (SCMachine *of_room = SCMachine::machine_of(room.get())) {
			hand(of_room, names().room_kind, kind);
			hand(of_room, names().room_cell, cell);
		}
		set_up_doors(room.get(), cell);
		if (parent.get() == nullptr) {
			room.get()->queue_free();
			return;
		}
		built[cell] = int64_t(room.get()->get_instance_id());
		newcomers::add(parent.get(), room.get());
	}

	void build_rooms() {
		built_in_frame = this_frame();
		random.instantiate();
		random->set_seed(uint64_t(seed) + OTHER_DRAWS);
		const Dictionary cells = layout.get(names().cells, Dictionary());
		const Array places = cells.keys();
		for (int64_t i = 0; i < places.size(); i++) {
			build_room(places[i], cells[places[i]]);
		}
		TypedDictionary<Vector2i, Node> rooms;
		const Array kept = built.keys();
		for (int64_t i = 0; i < kept.size(); i++) {
			if (Node *room = room_at(kept[i])) {
				rooms[kept[i]] = room;
			}
		}
		ask(names().remember, Array::make(layout, rooms, room_size, seed));
	}

	Node *room_at(const Vector2i &cell) const { return Object::cast_to<Node>(ObjectDB::get_instance(uint64_t(int64_t(built.get(cell, 0))))); }

	// Where the player is put. A room that has yet to join its parent has no place in the world.
	bool start_place(Vector2 &place) const {
		Node *room = room_at(Vector2i());
		if (room == nullptr) {
			return false;
		}
		Node *named = room->get_node_or_null(names().player_start);
		if (named == nullptr) {
			named = room->find_child(names().player_start_name, true, false);
		}
		const Node2D *spot = Object::cast_to<Node2D>(named);
		if (spot == nullptr) {
			spot = Object::cast_to<Node2D>(room);
		}
		if (spot == nullptr) {
			return false;
		}
		place = spot->get_global_position();
		const CanvasItem *around = Object::cast_to<CanvasItem>(parent.get());
		if (!room->is_inside_tree() && around != nullptr) {
			place = around->get_global_transform().xform(place);
		}
		return true;
	}

	void move_player() {
		const NodePath path = setting_of<&Kind::player_path>(action.ptr());
		if (path.is_empty()) {
			return;
		}
		Node *found = values::node_of(machine, path);
		const Weak<Node2D> player(Object::cast_to<Node2D>(found));
		if (player.get() == nullptr) {
			wrong(Kind::NO_PLAYER,
					found == nullptr ? String("Player points at nothing") : vformat("%s is not a 2D node, and the floor is laid out in 2D", found->get_name()));
			return;
		}
		Vector2 place;
		if (!start_place(place)) {
			verbs::warn(machine, action.ptr(),
					"there is no start room to stand in, or it is not a 2D scene, so the player stays where it is. Make the Start Room of a Node2D.");
			return;
		}
		player.get()->set_global_position(place);
		if (player.get() != nullptr) {
			player.get()->force_update_transform();
			settle_all(player.get());
			player.get()->reset_physics_interpolation();
		}
	}

public:
	Floor(SCMachineBase *of_machine, SCMachineAction *of_action, int of_index) :
			machine(of_machine), action(of_action), index(of_index), here(of_machine), still(of_machine), parent(nullptr) {}

	void build() {
		if (!machine->is_inside_tree() || !read_rooms() || !here || !find_parent() || !here) {
			return;
		}
		if (is_building) {
			verbs::warn(machine, action.ptr(),
					"another floor is being built at this moment, and this comes from one of its rooms, so no second one is built. Build the next floor later, "
					"such as when the player takes the stairs.");
			return;
		}
		const WhileBuilding building;
		if (would_go_with_the_floor_before()) {
			return;
		}
		read_size();
		const int64_t fights = fight_room_count();
		seed = setting_of<&Kind::floor_seed>(action.ptr());
		if (seed == 0) {
			seed = UtilityFunctions::randi_range(1, LARGEST_NEW_SEED);
		}
		clear_floor_before();
		if (!here || !lay_out(fights)) {
			return;
		}
		build_rooms();
	}

	void tell() {
		if (here) {
			verbs::keep_if_named<&Kind::store_seed_in>(machine, action.ptr(), seed);
		}
		// Also when a room's own code has ended the state meanwhile: the player is not left in a floor that has gone.
		if (still.get() != nullptr && machine->is_inside_tree()) {
			move_player();
		}
		if (here) {
			verbs::send<&Kind::built_event>(machine, action.ptr());
		}
	}
	bool is_built() const { return !built.is_empty(); }
};

class BuildDungeon : public OnceOrRepeating<BuildDungeon> {
public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		Floor floor(machine, action, index);
		floor.build();
		if (floor.is_built()) {
			floor.tell();
		}
	}
};

const AddKinds added = {
	add_kind<SCBuildDungeonAction, BuildDungeon>(),
};

} // namespace
