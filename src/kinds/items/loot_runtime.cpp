// The compiled runtime of Drop Loot.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/weak.hpp"
#include "inventory/bags.hpp"
#include "kinds/items/chances.hpp"
#include "kinds/items/loot.hpp"
#include "kinds/items/varied_items.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

using Kind = SCDropLootAction;

// In pixels; a metre is as many.
constexpr double NEAREST = 24.0;
constexpr double FARTHEST = 56.0;
constexpr real_t PIXELS_PER_METRE = 32.0;

struct Names {
	StringName loot_2d = "ground_loot";
	StringName loot_3d = "ground_loot_3d";
	StringName lay = "lay";
	StringName sound = "sound";
	StringName how_many = "how_many";
	StringName gold_goes_into = "gold_goes_into";
	StringName side_on = "quillstead_side_on";
	StringName player = "player";
	StringName held = "held";
	StringName item = "item";
};

const Names &names() {
	return NativeNames::of<Names>();
}

bool is_side_on(const Node *body) {
	if (body->get_meta(names().side_on, false).booleanize()) {
		return true;
	}
	const Node *player = body->is_inside_tree() ? body->get_tree()->get_first_node_in_group(names().player) : nullptr;
	return player != nullptr && player->get_meta(names().side_on, false).booleanize();
}

// One time of dropping. Its settings are read before anything that may run a game's code, and what is to fall falls even when
// the first piece has ended the state.
class Drop {
	Weak<SCMachineBase> machine;
	Weak<Node> body;
	Ref<AudioStream> item_sound;
	StringName dropped_event;

public:
	Drop(SCMachineBase *of_machine, Node *of_body, SCMachineAction *action) :
			machine(of_machine), body(of_body), item_sound(setting_of<&Kind::item_sound>(action)), dropped_event(setting_of<&Kind::dropped_event>(action)) {}

	bool lay_item(const Ref<Resource> &item, int64_t how_many) {
		Object *loot = lay(item, 0);
		if (loot == nullptr) {
			return false;
		}
		loot->set(names().how_many, how_many);
		loot->set(names().sound, item_sound);
		return true;
	}

	void tell(const Ref<Resource> &item) {
		if (SCMachineBase *alive = machine.get()) {
			verbs::send(alive, dropped_event, item);
		}
	}

	void lay_gold(int64_t gold, const StringName &goes_into, const Ref<AudioStream> &sound) {
		if (Object *loot = lay(Ref<Resource>(), gold)) {
			loot->set(names().gold_goes_into, goes_into);
			loot->set(names().sound, sound);
		}
	}

	void lay_what_is_carried() {
		Array stacks;
		if (Node *bag = bags::on(body.get(), bags::CARRIED)) {
			const Variant held = bag->get(names().held);
			stacks = held.get_type() == Variant::ARRAY ? Array(held).duplicate() : Array();
		}
		for (int64_t i = 0; i < stacks.size(); i++) {
			const Object *stack = stacks[i].get_validated_object();
			const Variant lies = stack != nullptr ? stack->get(names().item) : Variant();
			const Ref<Resource> item = Object::cast_to<Resource>(lies.get_validated_object());
			const int64_t how_many = stack != nullptr ? int64_t(values::as_number(stack->get(names().how_many))) : 0;
			Node *bag = bags::on(body.get(), bags::CARRIED);
			if (item.is_null() || how_many < 1 || bag == nullptr || !bags::has(bag, item, how_many) || !lay_item(item, how_many)) {
				continue;
			}
			// A chest that is opened twice has it once. Another one may stand under the body by now.
			const Weak<Node> from(bag);
			if (from.get() != nullptr) {
				bags::take(from.get(), item, how_many);
			}
			tell(item);
		}
	}

private:
	Object *lay(const Ref<Resource> &item, int64_t gold) {
		SCMachineBase *alive = machine.get();
		Node *there = body.get();
		if (alive == nullptr || there == nullptr || !there->is_inside_tree()) {
			return nullptr;
		}
		const double angle = Math::TAU * UtilityFunctions::randf();
		const double distance = UtilityFunctions::randf_range(NEAREST, FARTHEST);
		Vector2 push = Vector2(Math::cos(angle), Math::sin(angle)) * distance;
		push.y *= 0.5;
		Variant loot;
		if (const Node3D *node_3d = Object::cast_to<Node3D>(there)) {
			const Vector3 push_3d(push.x / PIXELS_PER_METRE, 0, push.y * 2 / PIXELS_PER_METRE);
			loot = CompanionScripts::call(names().loot_3d, names().lay, Array::make(alive, node_3d->get_global_position(), item, gold, push_3d));
		} else if (const Node2D *node_2d = Object::cast_to<Node2D>(there)) {
			if (is_side_on(there)) {
				push.y = 0;
			}
			loot = CompanionScripts::call(names().loot_2d, names().lay, Array::make(alive, node_2d->get_global_position(), item, gold, push));
		}
		return loot.get_validated_object();
	}
};

class DropLoot : public OnceOrRepeating<DropLoot> {
public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		Node *body = machine->target_node();
		if (Object::cast_to<Node2D>(body) == nullptr && Object::cast_to<Node3D>(body) == nullptr) {
			verbs::say<&Kind::warn>(action, machine, index, body);
			return;
		}
		const StillHere here(machine);
		Drop drop(machine, body, action);
		const double chance = checked::number<&Kind::item_chance>(machine, action);
		const double varies_by = checked::number<&Kind::varies_by>(machine, action);
		const PackedFloat32Array weights = chances::of<Kind>(action);
		const bool drops_what_it_carries = setting_of<&Kind::drops_what_it_carries>(action);
		const int64_t least = setting_of<&Kind::gold_least>(action);
		const int64_t most = setting_of<&Kind::gold_most>(action);
		const StringName goes_into = setting_of<&Kind::gold_goes_into>(action);
		const Ref<AudioStream> gold_sound = setting_of<&Kind::gold_sound>(action);
		const Array listed = chances::sound_items(machine, action, setting_of<&Kind::items>(action));
		const bool drops_one = chance > UtilityFunctions::randf() * 100.0;
		if (!here) {
			return;
		}
		if (drops_one && !listed.is_empty()) {
			Ref<Resource> item = chances::pick(machine, action, listed, weights, false, false);
			if (item.is_valid() && varies_by > 0.0) {
				item = varied_items::varied(item, varies_by);
			}
			if (item.is_valid() && drop.lay_item(item, 1)) {
				drop.tell(item);
			}
		}
		if (drops_what_it_carries) {
			drop.lay_what_is_carried();
		}
		if (most > 0) {
			const int64_t gold = UtilityFunctions::randi_range(MIN(least, most), MAX(least, most));
			if (gold > 0) {
				drop.lay_gold(gold, goes_into, gold_sound);
			}
		}
	}
};

const AddKinds added = {
	add_kind<SCDropLootAction, DropLoot>(),
};

} // namespace
