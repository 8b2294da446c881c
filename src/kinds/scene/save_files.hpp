#pragma once

// The files of saved games: where a slot's file lies, and how one is written so that whatever happens meanwhile, a file that was
// whole before is followed by one that is whole. They hold one JSON object each.

#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/string.hpp>

using namespace godot;

namespace save_files {

// Where everything that is saved lies.
extern const char *const FOLDER;

// Of the variables, and of the scene. Empty for a slot whose file would lie outside of the folder.
String path_of(const String &slot);
String scene_path_of(const String &slot);

// Whether anything is there that was once written to its end.
bool exists(const String &path);
// False when there was nothing, or it could not be taken away.
bool remove(const String &path);
// The text of a JSON object, which replaces what is there once it is wholly on the disk. Folders are made. False when it could not be
// written, or could not be read again: what is there stays then.
bool write(const String &path, const String &text);
// False, and `held` as it was, when nothing is there or what is there is not whole.
bool read(const String &path, Dictionary &held);

} // namespace save_files
