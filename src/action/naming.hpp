#pragma once

// Which settings of a kind name variables and events, told by the names of the settings alone, and
// what they hold. The answers of variables_read(), variables_written() and events_sent() come from here.

#include "action/action_shared.hpp"

#include <godot_cpp/variant/packed_string_array.hpp>

namespace naming {

const KindNames &of_object(const Object *object);
// Those that hold something and that the inspector shows at this moment.
LocalVector<StringName> shown(const Object *object, const LocalVector<StringName> &settings);
// What they hold, each once.
PackedStringArray names_held_in(const Object *object, const LocalVector<StringName> &settings);

PackedStringArray variables_read(const Object *object);
PackedStringArray variables_written(const Object *object);
PackedStringArray events_sent(const Object *object);
// Every variable that an action and its condition have to do with.
TypedArray<StringName> variables_used(const Object *action);

LocalVector<StringName> list_from(const Array &names);
TypedArray<StringName> array_from(const LocalVector<StringName> &names);

} // namespace naming
