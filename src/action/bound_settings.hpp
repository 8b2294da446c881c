#pragma once

// Which settings of one action or condition are read from which variables, worked out once, so that a tick writes
// the fields of a compiled kind without looking for anything by its name. A game may change the dictionary in place
// at any time: what was worked out counts only as long as it says the same.

#include "machine/held.hpp"

#include <godot_cpp/variant/dictionary.hpp>

using namespace godot;

namespace godot {
class Object;
}
class SCMachineBase;

class BoundSettings {
	struct Rows;

	Held<Rows> rows;
	bool named_elsewhere = false;
	bool by_name_alone = false;

	void work_out(Object *object, const Dictionary &named, const Dictionary &typed_in);

public:
	BoundSettings();
	~BoundSettings();
	BoundSettings(const BoundSettings &) = delete;
	BoundSettings &operator=(const BoundSettings &) = delete;

	// What reading::read_variables_into() does. The object and its fields may be gone afterwards.
	void read_into(Object *object, const Dictionary &named, const Dictionary &typed_in, SCMachineBase *machine);
	// What was typed in, or what the object is, has changed.
	void forget();

	void note_names() { named_elsewhere = true; }
	// As long as nobody has been given the dictionary of names it is empty, and the engine need not be asked.
	bool may_have_names() const { return named_elsewhere; }
	bool may_be_in_use(const Dictionary &named) const { return named_elsewhere && (rows.is_valid() || !named.is_empty()); }
	// Somebody has been given what was typed in, and may change it unseen.
	void note_typed_in() { by_name_alone = true; }
};
