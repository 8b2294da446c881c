#pragma once

// Twins: for each setting of a kind that a variable may feed, a pretend property "<setting>_variable"
// that names the variable. Shown in the inspector and never stored; its content lies in
// `from_variables`. The property hooks of both bases come here.

#include "action/action_shared.hpp"

#include <godot_cpp/templates/list.hpp>

namespace twins {

const KindTwins &of(const Kind &kind);
const KindTwins &of_object(const Object *object);

// The hooks. Each answers false for a property that is no twin.
bool get(const Object *object, const StringName &property, Variant &value);
bool set(Object *object, const StringName &property, const Variant &value);
void list(const Object *object, List<PropertyInfo> *properties);

bool is_read_from_a_variable(const Object *object, const StringName &setting);

PropertyInfo describe(const StringName &twin);
// Every setting that a variable is named for, by a twin or by a `<setting>_variable` of the kind's own.
Dictionary variables_behind(const Object *object);

} // namespace twins
