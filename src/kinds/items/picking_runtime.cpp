// The compiled runtimes of Offer Item and Pick Item.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/items/chances.hpp"
#include "kinds/items/picking.hpp"

namespace {

template <class Kind>
void answer(SCMachineBase *machine, SCMachineAction *action, int index, const Ref<Resource> &item) {
	const StillHere here(machine);
	const StringName variable = setting_of<&Kind::store_in>(action);
	const StringName none_left = setting_of<&Kind::none_left_event>(action);
	if (variable.is_empty()) {
		verbs::say<&Kind::warn>(action, machine, index);
	} else if (item.is_valid()) {
		verbs::keep<&Kind::store_in>(machine, action, item, "the item");
	} else {
		verbs::let_go(machine, variable);
	}
	if (here && item.is_null()) {
		verbs::send(machine, none_left);
	}
}

class OfferItem : public OnceOrRepeating<OfferItem> {
	using Kind = SCOfferItemAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StillHere here(machine);
		const PackedFloat32Array weights = chances::of<Kind>(action);
		const bool is_choosy = setting_of<&Kind::not_taken_this_run>(action);
		Array listed = chances::sound_items(machine, action, setting_of<&Kind::items>(action));
		if (is_choosy) {
			listed = chances::not_taken(listed);
		}
		const Ref<Resource> item = chances::pick(machine, action, listed, weights, false, false);
		if (here) {
			answer<Kind>(machine, action, index, item);
		}
	}
};

class PickItem : public OnceOrRepeating<PickItem> {
	using Kind = SCPickItemAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StillHere here(machine);
		const PackedFloat32Array weights = chances::of<Kind>(action);
		const bool is_choosy = setting_of<&Kind::not_seen_this_run>(action);
		const Array listed = chances::sound_items(machine, action, setting_of<&Kind::items>(action));
		const Ref<Resource> item = chances::pick(machine, action, listed, weights, is_choosy, true);
		if (here) {
			answer<Kind>(machine, action, index, item);
		}
	}
};

const AddKinds added = {
	add_kind<SCOfferItemAction, OfferItem>(),
	add_kind<SCPickItemAction, PickItem>(),
};

} // namespace
