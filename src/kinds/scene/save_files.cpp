#include "kinds/scene/save_files.hpp"

#include "kinds/scene/save_text.hpp"
#include "kinds/scene/saved_values.hpp"

#include <godot_cpp/classes/dir_access.hpp>
#include <godot_cpp/classes/file_access.hpp>
#include <godot_cpp/classes/json.hpp>
#include <godot_cpp/classes/os.hpp>
#include <godot_cpp/variant/packed_byte_array.hpp>
#include <godot_cpp/variant/packed_string_array.hpp>

namespace {

// Larger ones would take many seconds, and memory that not every player's computer has: of short values they take sixty times
// as much as on the disk.
constexpr int64_t MOST_BYTES = saved_values::MOST_LETTERS;

// What is being written, until it is whole.
String beside(const String &path) {
	return path + String(".new");
}

bool leads_out(const String &slot) {
	// The engine takes either slash for the other on every system.
	const String plain = slot.replace("\\", "/");
	const bool begins_with_drive = plain.length() > 1 && plain[1] == ':' && (plain.length() == 2 || plain[2] == '/');
	if (plain.begins_with("/") || plain.contains("://") || begins_with_drive) {
		return true;
	}
	// There it names a part of a file that no folder lists.
	if (plain.contains(":") && OS::get_singleton()->has_feature("windows")) {
		return true;
	}
	// The last part is the beginning of the file's name, dots or not.
	const PackedStringArray parts = plain.split("/", true);
	int64_t below = 0;
	for (int64_t i = 0; i + 1 < parts.size(); i++) {
		if (parts[i] == "..") {
			below--;
		} else if (!parts[i].is_empty() && parts[i] != ".") {
			below++;
		}
		if (below < 0) {
			return true;
		}
	}
	return false;
}

bool make_folder(const String &folder) {
	if (DirAccess::dir_exists_absolute(folder)) {
		return true;
	}
	// The engine prints an error when a file is in the way.
	for (String above = folder; above != above.get_base_dir(); above = above.get_base_dir()) {
		if (FileAccess::file_exists(above)) {
			return false;
		}
	}
	return DirAccess::make_dir_recursive_absolute(folder) == OK;
}

bool read_bytes(const String &path, PackedByteArray &bytes) {
	const Ref<FileAccess> file = FileAccess::file_exists(path) ? FileAccess::open(path, FileAccess::READ) : Ref<FileAccess>();
	if (file.is_null()) {
		return false;
	}
	const auto size = int64_t(file->get_length());
	if (size <= 0 || size > MOST_BYTES) {
		return false;
	}
	bytes = file->get_buffer(size);
	return bytes.size() == size;
}

bool read_file(const String &path, Dictionary &held) {
	String text;
	{
		PackedByteArray bytes;
		if (!read_bytes(path, bytes) || !save_text::is_sound(bytes)) {
			return false;
		}
		text = bytes.get_string_from_utf8();
	}
	Ref<JSON> json;
	json.instantiate();
	if (json->parse(text) != OK || json->get_data().get_type() != Variant::DICTIONARY) {
		return false;
	}
	held = json->get_data();
	return true;
}

bool is_whole(const String &path) {
	Dictionary held;
	return read_file(path, held);
}

// A full disk may show only as the file is closed.
bool write_file(const String &path, const PackedByteArray &bytes) {
	const Ref<FileAccess> file = FileAccess::open(path, FileAccess::WRITE);
	if (file.is_null()) {
		return false;
	}
	const bool is_stored = file->store_buffer(bytes);
	file->flush();
	const bool is_well = is_stored && file->get_error() == OK;
	file->close();
	const Ref<FileAccess> again = is_well ? FileAccess::open(path, FileAccess::READ) : Ref<FileAccess>();
	return again.is_valid() && int64_t(again->get_length()) == bytes.size();
}

// Where renaming takes the old file away first, the game may have ended in between: then the new one is all there is.
void finish_what_was_left(const String &path) {
	if (!FileAccess::file_exists(path) && is_whole(beside(path))) {
		DirAccess::rename_absolute(beside(path), path);
	}
}

} // namespace

namespace save_files {

const char *const FOLDER = "user://quillstead";

String path_of(const String &slot) {
	return leads_out(slot) ? String() : String(FOLDER).path_join(slot + String(".json")).simplify_path();
}

String scene_path_of(const String &slot) {
	const String path = path_of(slot);
	return path.is_empty() ? path : path.trim_suffix(".json") + String(".scene.json");
}

bool exists(const String &path) {
	return !path.is_empty() && (FileAccess::file_exists(path) || is_whole(beside(path)));
}

bool remove(const String &path) {
	if (path.is_empty()) {
		return false;
	}
	bool is_gone = false;
	// First, or it would take the place of the other.
	if (FileAccess::file_exists(beside(path))) {
		const bool counts = !FileAccess::file_exists(path) && is_whole(beside(path));
		is_gone = DirAccess::remove_absolute(beside(path)) == OK && counts;
	}
	if (FileAccess::file_exists(path)) {
		is_gone = DirAccess::remove_absolute(path) == OK;
	}
	return is_gone;
}

bool write(const String &path, const String &text) {
	const PackedByteArray bytes = save_text::readable(text.to_utf8_buffer());
	if (path.is_empty() || bytes.size() > MOST_BYTES || !save_text::is_sound(bytes)) {
		return false;
	}
	if (!make_folder(path.get_base_dir()) || DirAccess::dir_exists_absolute(path)) {
		return false;
	}
	finish_what_was_left(path);
	const bool is_written = write_file(beside(path), bytes);
	if (is_written && DirAccess::rename_absolute(beside(path), path) == OK) {
		return true;
	}
	// Should the old one be gone already, this is the only one.
	if (FileAccess::file_exists(beside(path)) && (!is_written || FileAccess::file_exists(path))) {
		DirAccess::remove_absolute(beside(path));
	}
	return false;
}

bool read(const String &path, Dictionary &held) {
	return !path.is_empty() && read_file(FileAccess::file_exists(path) ? path : beside(path), held);
}

} // namespace save_files
