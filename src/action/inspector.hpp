#pragma once

// How an action or a condition shows in the inspector: what is hidden, what takes a value of any type,
// and what changes when the machine works on something in 2D.

#include "action/kind.hpp"

namespace inspector {

// A setting and the twin that reads it from a variable are shown and hidden together.
void hide_by_rules(const Object *object, PropertyInfo &property);
// The rules that hold for every kind, on a property about to be shown.
void validate(const Object *object, PropertyInfo &property);
// The same for a description that a script's _validate_property got.
void validate(const Object *object, Dictionary described);
// Whether this setting of the kind takes a value of any type. Asked and answered in the editor only.
bool holds_any_type(const Kind &kind, const StringName &setting);
// What the machine works on decides where there is one to ask, else what the editor last said.
bool shown_on_2d(const Object *object);
bool shown_on_2d_known(const Object *object);
void show_as_any_type(PropertyInfo &property);

// The run mode that a fresh action of this kind has.
int64_t starting_run_mode(const Kind &kind);

} // namespace inspector
