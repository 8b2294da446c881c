#pragma once

// Which files and folders a game may touch: what lies in user://, and what the game was shipped with for reading. Anything else on
// the computer only where the game maker has ticked Anywhere. A path out of a variable, which may be what a player typed, leads
// no further than that, by no trick.

#include "action/kind_table.hpp"
#include "action/shared_verbs.hpp"

namespace files {

enum Use {
	READ,
	WRITE,
	// The thing itself goes, not only what is in it.
	TAKE_AWAY,
};

// Where a path leads, or why it leads nowhere: the part of a sentence before ", so nothing was done".
struct Place {
	String path;
	String wrong;
	String remedy;

	explicit operator bool() const { return wrong.is_empty(); }
};

// `setting` is the setting's name as the inspector shows it. A path that ends in a slash comes out without it.
Place place_of(const String &typed, Use use, bool anywhere, const String &setting);
// The place on the computer, in the words of its file system. Empty for what is packed into the game.
String on_the_computer(const String &path);
// Whether `inner` lies in `outer` or is the same, both being places on the computer.
bool is_within(const String &inner, const String &outer);
bool is_folder(const String &path);

// A text with the values of variables in it. What came out of a variable is taken as it stands.
String filled_in(SCMachineBase *machine, const SCMachineAction *action, const String &text, const StringName &setting);
template <auto Field>
String filled_in(SCMachineBase *machine, const SCMachineAction *action) {
	return filled_in(machine, action, setting_of<Field>(action), verbs::name_of<Field>());
}
// The place that a path setting leads to; the game maker is told when there is none.
Place place_or_warn(SCMachineBase *machine, const SCMachineAction *action, const String &typed, const StringName &setting, Use use, bool anywhere);
template <auto Field, auto Anywhere>
Place place_or_warn(SCMachineBase *machine, const SCMachineAction *action, Use use) {
	return place_or_warn(machine, action, filled_in<Field>(machine, action), verbs::name_of<Field>(), use, setting_of<Anywhere>(action));
}
void warn_nothing_done(SCMachineBase *machine, const SCMachineAction *action, const String &wrong, const String &remedy);

// Adds the variables named in braces in a text.
void add_names_in(const String &text, PackedStringArray &names);
// A text in a summary: in quotes, on one line, and not too much of it.
String in_line(const String &text);
// A path in a warning, on one line and not too long to read.
String in_warning(const String &path);

} // namespace files
