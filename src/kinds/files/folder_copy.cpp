#include "kinds/files/folder_copy.hpp"

#include "kinds/files/paths.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/dir_access.hpp>
#include <godot_cpp/classes/file_access.hpp>
#include <godot_cpp/classes/time.hpp>

namespace {

struct Names {
	StringName from = "from";
	StringName to = "to";
	StringName keeps = "keeps";
	// Paths below both, of what is still to be looked into and to be copied, last first.
	StringName folders = "folders";
	StringName files = "files";
	StringName count = "count";
	StringName reading = "reading";
	StringName writing = "writing";
	// The file being written, which gets its name when it is whole.
	StringName file = "file";
	String unfinished = "~new";
};

const Names &names() {
	return NativeNames::of<Names>();
}

constexpr int64_t PIECE = 256 * 1024;

Ref<FileAccess> file_in(const Dictionary &memory, const StringName &name) {
	return Ref<FileAccess>(Object::cast_to<FileAccess>(memory.get(name, Variant()).get_validated_object()));
}

// The folder itself for no name.
String below(const String &folder, const String &name) {
	return name.is_empty() ? folder : folder.path_join(name);
}

// A program stays one that can be run. What is packed into the game has no such marks.
void take_over_permissions(const String &from, const String &to) {
	constexpr int64_t MAY_BE_RUN = 0111;
	if (!from.begins_with("res://")) {
		const auto marks = int64_t(FileAccess::get_unix_permissions(from));
		if ((marks & MAY_BE_RUN) != 0) {
			FileAccess::set_unix_permissions(to, BitField<FileAccess::UnixPermissionFlags>(marks));
		}
	}
}

} // namespace

namespace files {

void FolderCopy::begin(const String &from, const String &to, bool keeps_files) {
	memory.clear();
	memory[names().from] = from;
	memory[names().to] = to;
	memory[names().keeps] = keeps_files;
	memory[names().folders] = PackedStringArray({ String() });
	memory[names().files] = PackedStringArray();
	memory[names().count] = 0;
}

bool FolderCopy::is_under_way() const {
	return !PackedStringArray(memory.get(names().folders, PackedStringArray())).is_empty() ||
			!PackedStringArray(memory.get(names().files, PackedStringArray())).is_empty() || memory.has(names().writing);
}

int64_t FolderCopy::count() const {
	return memory.get(names().count, 0);
}

String FolderCopy::go_on(uint64_t microseconds) {
	const Time *clock = Time::get_singleton();
	const uint64_t begun = clock->get_ticks_usec();
	String wrong;
	do {
		wrong = next_piece();
	} while (wrong.is_empty() && is_under_way() && clock->get_ticks_usec() - begun < microseconds);
	return wrong;
}

String FolderCopy::next_piece() {
	if (memory.has(names().writing)) {
		return copy_some();
	}
	// Files first: a folder's are copied before the next is looked into, so that neither list grows long.
	for (const StringName &list : { names().files, names().folders }) {
		PackedStringArray left = memory.get(list, PackedStringArray());
		if (!left.is_empty()) {
			const String next = left[left.size() - 1];
			left.resize(left.size() - 1);
			memory[list] = left;
			return list == names().files ? open_file(next) : list_folder(next);
		}
	}
	return String();
}

String FolderCopy::list_folder(const String &folder) {
	const String from = below(memory[names().from], folder);
	const String to = below(memory[names().to], folder);
	if (FileAccess::file_exists(to)) {
		return vformat("%s is a file, and a folder of that name is needed", to);
	}
	const Ref<DirAccess> held = DirAccess::open(from);
	if (held.is_null()) {
		return vformat("the folder %s cannot be opened", from);
	}
	if (!is_folder(to) && DirAccess::make_dir_recursive_absolute(to) != OK) {
		return vformat("the folder %s cannot be made", to);
	}
	held->set_include_hidden(true);
	PackedStringArray folders_left = memory[names().folders];
	PackedStringArray files_left = memory[names().files];
	held->list_dir_begin();
	for (String name = held->get_next(); !name.is_empty(); name = held->get_next()) {
		// A link may lead to the folder it is in, and round and round.
		if (!held->is_link(from.path_join(name))) {
			(held->current_is_dir() ? folders_left : files_left).push_back(below(folder, name));
		}
	}
	held->list_dir_end();
	memory[names().folders] = folders_left;
	memory[names().files] = files_left;
	return String();
}

String FolderCopy::open_file(const String &file) {
	const String from = below(memory[names().from], file);
	const String to = below(memory[names().to], file);
	if (is_folder(to)) {
		return vformat("%s is a folder, and a file of that name is needed", to);
	}
	if (bool(memory[names().keeps]) && FileAccess::file_exists(to)) {
		return String();
	}
	const Ref<FileAccess> reading = FileAccess::open(from, FileAccess::READ);
	if (reading.is_null()) {
		return vformat("%s cannot be opened", from);
	}
	const Ref<FileAccess> writing = FileAccess::open(to + names().unfinished, FileAccess::WRITE);
	if (writing.is_null()) {
		return vformat("%s cannot be written", to);
	}
	memory[names().file] = file;
	memory[names().reading] = reading;
	memory[names().writing] = writing;
	return copy_some();
}

String FolderCopy::copy_some() {
	const Ref<FileAccess> reading = file_in(memory, names().reading);
	const Ref<FileAccess> writing = file_in(memory, names().writing);
	if (reading.is_null() || writing.is_null()) {
		memory.erase(names().writing);
		return "a file was closed while it was being copied";
	}
	const auto left = int64_t(reading->get_length() - reading->get_position());
	const int64_t size = MIN(left, PIECE);
	if (size > 0) {
		const PackedByteArray piece = reading->get_buffer(size);
		if (piece.size() < size || !writing->store_buffer(piece)) {
			return vformat("%s could not be copied; the disk may be full", memory[names().file]);
		}
	}
	return size == left ? end_file() : String();
}

String FolderCopy::end_file() {
	const String file = memory[names().file];
	const String from = below(memory[names().from], file);
	const String to = below(memory[names().to], file);
	const Ref<FileAccess> writing = file_in(memory, names().writing);
	writing->flush();
	const bool is_whole = writing->get_error() == OK;
	writing->close();
	if (!is_whole || DirAccess::rename_absolute(to + names().unfinished, to) != OK) {
		return vformat("%s could not be copied; the disk may be full", file);
	}
	take_over_permissions(from, to);
	memory.erase(names().reading);
	memory.erase(names().writing);
	memory[names().count] = count() + 1;
	return String();
}

void FolderCopy::stop() {
	if (const Ref<FileAccess> writing = file_in(memory, names().writing); writing.is_valid()) {
		writing->close();
		const String unfinished = below(memory[names().to], memory[names().file]) + names().unfinished;
		if (FileAccess::file_exists(unfinished)) {
			DirAccess::remove_absolute(unfinished);
		}
	}
	memory.clear();
}

} // namespace files
