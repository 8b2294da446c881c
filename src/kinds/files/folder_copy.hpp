#pragma once

// The copying of a folder, piece by piece, so that the game can go on between two pieces. What is done and what is left lies in a
// Dictionary that the owner keeps.

#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/string.hpp>

using namespace godot;

namespace files {

class FolderCopy {
	Dictionary memory;

public:
	explicit FolderCopy(const Dictionary &kept) : memory(kept) {}

	void begin(const String &from, const String &to, bool keeps_files);
	bool is_under_way() const;
	// Goes on for so many microseconds, one piece at least. Answers what went wrong.
	String go_on(uint64_t microseconds);
	int64_t count() const;
	// Nothing half copied is left behind.
	void stop();

private:
	String next_piece();
	String list_folder(const String &folder);
	String open_file(const String &file);
	String copy_some();
	String end_file();
};

} // namespace files
