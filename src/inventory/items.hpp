#pragma once

// Items, which the addon's script declares: which one an action means, and what it is called.

#include "action/shared_verbs.hpp"

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>

using namespace godot;

namespace items {

bool is_item(const Object *object);
// An empty list of items as a scene keeps one.
Array none();
// The name a player sees; "nothing" for no item.
String shown_name(const Ref<Resource> &item);
// Two that answer alike count as one.
String key_of(const Ref<Resource> &item);
// Any of an item's members, by name; nil for no item.
Variant ask(const Ref<Resource> &item, const StringName &member);

// The item an action works with: the one its variable holds when it names a variable, the one picked otherwise. Without one,
// `missing` says why, to go into a sentence: "no Item is picked".
struct Meant {
	Ref<Resource> item;
	String missing;

	explicit operator bool() const { return item.is_valid(); }
};
Meant meant(SCMachineBase *machine, const Ref<Resource> &picked, const StringName &variable);
template <auto Item, auto Variable>
Meant meant(SCMachineBase *machine, const SCMachineAction *action) {
	return meant(machine, setting_of<Item>(action), setting_of<Variable>(action));
}
// How such an item is named in a summary: "[variable]", its own name, or "(pick one)".
String in_line(const Ref<Resource> &picked, const StringName &variable);

} // namespace items
