#pragma once

// The settings of kinds that pick an item by chance, and the picking. A kind that has them declares a list `items`, and
// `common_chance`, `uncommon_chance`, `rare_chance` and `legendary_chance`.

#include "action/kind_table.hpp"

#include <godot_cpp/variant/packed_float32_array.hpp>

namespace chances {

template <class Kind>
void declare(KindTable<Kind> &kind) {
	kind.template setting<&Kind::common_chance>("common_chance", hint::CHANCE,
			"How often common items turn up, against the chances of the other rarities: with 60 and 20, three times as often. Zero is never.");
	kind.template setting<&Kind::uncommon_chance>("uncommon_chance", hint::CHANCE, "How often uncommon items turn up, against the other chances.");
	kind.template setting<&Kind::rare_chance>("rare_chance", hint::CHANCE, "How often rare items turn up, against the other chances.");
	kind.template setting<&Kind::legendary_chance>("legendary_chance", hint::CHANCE, "How often legendary items turn up, against the other chances.");
}

// The items among what is listed. A row that holds something else is told of.
Array sound_items(SCMachineBase *machine, SCMachineAction *action, const Array &listed);
// Those of them that were not taken in this run.
Array not_taken(const Array &listed);
// One of them, null for none. `leaves_out_seen` leaves out what turned up in this run, and `remembers` counts this one as turned up.
Ref<Resource> pick(
		SCMachineBase *machine, SCMachineAction *action, const Array &listed, const PackedFloat32Array &weights, bool leaves_out_seen, bool remembers);

template <class Kind>
PackedFloat32Array of(const SCMachineAction *action) {
	PackedFloat32Array weights;
	weights.push_back(float(setting_of<&Kind::common_chance>(action)));
	weights.push_back(float(setting_of<&Kind::uncommon_chance>(action)));
	weights.push_back(float(setting_of<&Kind::rare_chance>(action)));
	weights.push_back(float(setting_of<&Kind::legendary_chance>(action)));
	return weights;
}

} // namespace chances
