#include "kinds/files/text_files.hpp"

#include <godot_cpp/classes/dir_access.hpp>
#include <godot_cpp/classes/file_access.hpp>
#include <godot_cpp/variant/packed_byte_array.hpp>
#include <godot_cpp/variant/variant.hpp>

namespace {

constexpr int64_t LARGE = 100 * 1024 * 1024;
// In memory a text is four times as long, and the engine counts letters in 32 bits.
constexpr int64_t MOST = 10 * LARGE;

// How many bytes the letter at `at` takes, 0 when there is none that a text may hold. The engine prints an error for such.
int64_t letter_length(const uint8_t *bytes, int64_t at, int64_t size) {
	const uint8_t first = bytes[at];
	if (first < 0x80) {
		return first != 0 ? 1 : 0;
	}
	const int64_t length = first >= 0xF0 ? 4 : (first >= 0xE0 ? 3 : 2);
	if (first < 0xC2 || first > 0xF4 || at + length > size) {
		return 0;
	}
	uint32_t letter = first & (0xFF >> (length + 1));
	for (int64_t i = 1; i < length; i++) {
		if ((bytes[at + i] & 0xC0) != 0x80) {
			return 0;
		}
		letter = (letter << 6) | (bytes[at + i] & 0x3F);
	}
	const bool is_too_long = (length == 3 && letter < 0x800) || (length == 4 && letter < 0x10000);
	const bool is_half_a_letter = letter >= 0xD800 && letter <= 0xDFFF;
	return is_too_long || is_half_a_letter || letter > 0x10FFFF ? 0 : length;
}

bool is_text(const PackedByteArray &held) {
	const uint8_t *bytes = held.ptr();
	const int64_t size = held.size();
	for (int64_t at = 0; at < size;) {
		const int64_t length = letter_length(bytes, at, size);
		if (length == 0) {
			return false;
		}
		at += length;
	}
	return true;
}

String make_folder_for(const String &path) {
	const String folder = path.get_base_dir();
	if (DirAccess::dir_exists_absolute(path)) {
		return vformat("%s is a folder, not a file", path);
	}
	if (DirAccess::dir_exists_absolute(folder)) {
		return String();
	}
	// Making one where a file is in the way is an engine error.
	for (String above = folder; !DirAccess::dir_exists_absolute(above) && above != above.get_base_dir(); above = above.get_base_dir()) {
		if (FileAccess::file_exists(above)) {
			return vformat("%s is a file, and a folder of that name is needed", above);
		}
	}
	return DirAccess::make_dir_recursive_absolute(folder) == OK ? String() : vformat("the folder %s cannot be made", folder);
}

bool ends_a_line(const Ref<FileAccess> &file) {
	if (file->get_length() == 0) {
		return true;
	}
	file->seek_end(-1);
	return file->get_8() == '\n';
}

} // namespace

namespace files {

TextRead read_text(const String &path) {
	TextRead read;
	if (DirAccess::dir_exists_absolute(path)) {
		read.wrong = vformat("%s is a folder, not a file", path);
		read.remedy = "Name a file in it.";
		return read;
	}
	if (!FileAccess::file_exists(path)) {
		read.is_missing = true;
		read.wrong = vformat("there is no file %s", path);
		read.remedy = "Look at how it is spelled, large and small letters too, or ask with a File Exists check first.";
		return read;
	}
	const Ref<FileAccess> file = FileAccess::open(path, FileAccess::READ);
	if (file.is_null()) {
		read.wrong = vformat("%s cannot be opened", path);
		read.remedy = "Another program may have it open, or the player may not be allowed to read it.";
		return read;
	}
	const auto size = int64_t(file->get_length());
	if (size > MOST) {
		read.wrong = vformat("%s is of %d MB, which is more than a text can hold", path, size / (1024 * 1024));
		read.remedy = "Split it into smaller files.";
		return read;
	}
	read.is_large = size > LARGE;
	const PackedByteArray bytes = size > 0 ? file->get_buffer(size) : PackedByteArray();
	if (bytes.size() < size) {
		read.wrong = vformat("%s could not be read to its end", path);
		read.remedy = "Look whether the disk is all right.";
	} else if (!is_text(bytes)) {
		read.wrong = vformat("%s is not a text in UTF-8", path);
		read.remedy = "Save it as UTF-8 in the program that made it.";
	} else {
		read.text = bytes.get_string_from_utf8();
	}
	return read;
}

// Opening a file for writing empties it, and what is written then may not fit on the disk. So it is written beside it first.
String write_text(const String &path, const String &text) {
	const String wrong = make_folder_for(path);
	if (!wrong.is_empty()) {
		return wrong;
	}
	const String beside = path + String("~new");
	const Ref<FileAccess> file = FileAccess::open(beside, FileAccess::WRITE);
	if (file.is_null()) {
		return vformat("%s cannot be written", path);
	}
	const bool is_written = file->store_buffer(text.to_utf8_buffer());
	file->flush();
	const bool is_whole = is_written && file->get_error() == OK;
	file->close();
	if (!is_whole || DirAccess::rename_absolute(beside, path) != OK) {
		DirAccess::remove_absolute(beside);
		return vformat("%s cannot be written; the disk may be full, or the player not allowed to write there", path);
	}
	return String();
}

String add_text(const String &path, const String &text, bool on_a_new_line) {
	if (!FileAccess::file_exists(path)) {
		return write_text(path, text);
	}
	const Ref<FileAccess> file = FileAccess::open(path, FileAccess::READ_WRITE);
	if (file.is_null()) {
		return vformat("%s cannot be written", path);
	}
	const String before = on_a_new_line && !ends_a_line(file) ? "\n" : "";
	file->seek_end();
	const bool is_written = file->store_buffer((before + text).to_utf8_buffer());
	file->flush();
	return is_written && file->get_error() == OK ? String()
												 : vformat("%s cannot be written; the disk may be full, or the player not allowed to write there", path);
}

} // namespace files
