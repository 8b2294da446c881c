#pragma once

// Inventories: nodes with the addon's script. How stacks, slots and sorting go is that script's business; here is how one is found
// and asked. Everything but finding may run a game's code.

#include "action/shared_verbs.hpp"

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/string_name.hpp>

using namespace godot;

namespace bags {

enum Which { EITHER, CARRIED, WORN };

// The Inventory on that node; null for none. One with slot names is worn, one without is carried.
Node *on(const Node *node, Which which);
// The one on the node that a path leads to, which is the machine's own for an empty path.
Node *at(SCMachineBase *machine, const NodePath &path, Which which);

// How many went in.
int64_t add(Node *bag, const Ref<Resource> &item, int64_t how_many);
void take(Node *bag, const Ref<Resource> &item, int64_t how_many);
// For what was taken out of it a moment ago: in it goes, also where it would not fit any more.
void put_back(Node *bag, const Ref<Resource> &item, int64_t how_many);
bool has(Node *bag, const Ref<Resource> &item, int64_t how_many);
int64_t count(Node *bag, const Ref<Resource> &item);
int64_t stacks(Node *bag);
int64_t room_for(Node *bag, const Ref<Resource> &item);
// How many moved.
int64_t move_to(Node *bag, Node *other, const Ref<Resource> &item, int64_t how_many);
Ref<Resource> worn(Node *bag, const StringName &slot);
bool is_full(Node *bag);
void sort_by(Node *bag, int64_t order);
// The items of its stacks in order, those without one left out.
Array held_items(Node *bag);
Array slot_names(Node *bag);
// How many slots it has; below 1 when they are not counted.
int64_t slots(Node *bag);

// How many an action is to move: what its variable holds when it names one. At most what any inventory holds.
int64_t how_many(SCMachineBase *machine, int64_t typed_in, const StringName &variable);
// Says that there is none, of a kind by its name in the palette and what it cannot do without: "put anything in".
String none_to(SCMachineBase *machine, const NodePath &path, const char *kind, const char *what);
// For "Add an Inventory node under Player": the node that a path leads to, or the machine's own.
String under(SCMachineBase *machine, const NodePath &path);
// For "the node named in On, ../Horse, was not found".
String path_in_words(const NodePath &path);
// An inventory and an amount in a summary: "the inventory", "Chest", "3", "[price]". `below_one` stands for an amount that is none.
String in_line(const NodePath &path, const String &otherwise = "the inventory");
String how_many_in_line(int64_t typed_in, const StringName &variable, const String &below_one = String());

} // namespace bags
