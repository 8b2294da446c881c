#include "kinds/items/chances.hpp"

#include "action/shared_verbs.hpp"
#include "inventory/items.hpp"
#include "machine/native_names.hpp"

namespace chances {

namespace {

struct Names {
	StringName script = "quillstead_items";
	StringName pick = "pick";
	StringName was_given = "was_given";
};

const Names &names() {
	return NativeNames::of<Names>();
}

} // namespace

Array sound_items(SCMachineBase *machine, SCMachineAction *action, const Array &listed) {
	Array sound;
	for (int64_t i = 0; i < listed.size(); i++) {
		const Variant entry = listed[i];
		Object *object = entry.get_validated_object();
		if (items::is_item(object)) {
			sound.push_back(object);
		} else if (entry.get_type() != Variant::NIL && !(entry.get_type() == Variant::OBJECT && object == nullptr)) {
			verbs::warn(machine, action, vformat("row %d of Items holds %s, which is not an item, so it is left out.", i, values::kind_in_words(entry)));
		}
	}
	return sound;
}

Array not_taken(const Array &listed) {
	Array left;
	for (const Variant &item : listed) {
		if (!CompanionScripts::call(names().script, names().was_given, Array::make(item)).booleanize()) {
			left.push_back(item);
		}
	}
	return left;
}

Ref<Resource> pick(
		SCMachineBase *machine, SCMachineAction *action, const Array &listed, const PackedFloat32Array &weights, bool leaves_out_seen, bool remembers) {
	bool any = false;
	for (const float weight : weights) {
		any = any || weight > 0.0f;
	}
	if (!any && !listed.is_empty()) {
		verbs::warn(machine, action, "every chance is zero, so no item is ever picked. Raise one of the chances.");
		return Ref<Resource>();
	}
	const Variant picked = CompanionScripts::call(names().script, names().pick, Array::make(listed, weights, leaves_out_seen, remembers));
	return Object::cast_to<Resource>(picked.get_validated_object());
}

} // namespace chances
