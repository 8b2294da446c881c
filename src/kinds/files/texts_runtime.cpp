// Compiled runtimes of the kinds about text files.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/files/failing.hpp"
#include "kinds/files/paths.hpp"
#include "kinds/files/text_files.hpp"
#include "kinds/files/texts.hpp"

namespace {

// The lines of a text as everybody counts them: the end of the last one begins no other.
PackedStringArray lines_of(const String &text) {
	const String whole = text.ends_with("\n") ? text.left(text.length() - 1) : text;
	return text.is_empty() ? PackedStringArray() : whole.split("\n");
}

// A file of which another file system's programs have ended each line with two letters reads as any other.
String with_plain_lines(const String &text) {
	return text.contains("\r") ? text.replace("\r\n", "\n") : text;
}

// False when there is no text there, which is told. Somebody who has named an event for that expects a file not to be there.
template <class Kind>
bool read_from(SCMachineBase *machine, SCMachineAction *action, const files::Place &place, String &text) {
	const files::TextRead read = files::read_text(place.path);
	if (!read) {
		(read.is_missing ? files::fail_or_send<Kind> : files::fail<Kind>)(machine, action, read.wrong, read.remedy);
		return false;
	}
	if (read.is_large) {
		verbs::warn(machine, action,
				vformat("%s is larger than 100 MB, so the game stands still while it is read, and it takes four times as much memory. Split it into smaller "
						"files.",
						place.path));
	}
	text = read.text;
	return true;
}

class ReadFile : public OnceOrRepeating<ReadFile> {
	using Kind = SCReadFileAction;

	static Array listed(const PackedStringArray &lines) {
		Array list;
		for (int64_t i = 0; i < lines.size(); i++) {
			list.push_back(lines[i]);
		}
		return list;
	}

	static bool keeps_it_nowhere(const SCMachineAction *action) {
		return setting_of<&Kind::store_in>(action).is_empty() && setting_of<&Kind::store_lines_in>(action).is_empty() &&
				setting_of<&Kind::store_line_count_in>(action).is_empty();
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StillHere here(machine);
		const files::Place place = files::place_or_fail<Kind, &Kind::path>(machine, action, files::READ);
		String text;
		if (!place || !read_from<Kind>(machine, action, place, text)) {
			return;
		}
		text = with_plain_lines(text);
		if (!here) {
			return;
		}
		if (keeps_it_nowhere(action)) {
			verbs::keep<&Kind::store_in>(machine, action, text, "the text");
		}
		if (!setting_of<&Kind::store_in>(action).is_empty()) {
			verbs::keep<&Kind::store_in>(machine, action, text, "the text");
		}
		const PackedStringArray lines = lines_of(text);
		if (here) {
			verbs::keep_each<&Kind::store_lines_in, &Kind::store_line_count_in>(machine, action, { listed(lines), lines.size() });
		}
		if (here) {
			verbs::send<&Kind::done_event>(machine, action);
		}
	}
};

class WriteFile : public OnceOrRepeating<WriteFile> {
	using Kind = SCWriteFileAction;

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StillHere here(machine);
		const files::Place place = files::place_or_fail<Kind, &Kind::path>(machine, action, files::WRITE);
		if (!place) {
			return;
		}
		const String text = files::filled_in<&Kind::text>(machine, action);
		const bool adds = checked::choice<&Kind::how>(machine, action, Kind::ADD_TO_END) == Kind::ADD_TO_END;
		const String wrong = adds ? files::add_text(place.path, text, setting_of<&Kind::on_a_new_line>(action)) : files::write_text(place.path, text);
		if (!wrong.is_empty()) {
			files::fail<Kind>(machine, action, wrong, "Write to another place.");
		} else if (here) {
			verbs::send<&Kind::done_event>(machine, action);
		}
	}
};

class ChangeTextInFile : public OnceOrRepeating<ChangeTextInFile> {
	using Kind = SCChangeTextInFileAction;

	// How many places were changed.
	static int64_t change(String &text, const String &words, const String &into, Kind::Which which, bool ignore_case) {
		if (which == Kind::ALL) {
			const int64_t count = ignore_case ? text.countn(words) : text.count(words);
			text = ignore_case ? text.replacen(words, into) : text.replace(words, into);
			return count;
		}
		const int64_t at = which == Kind::LAST ? (ignore_case ? text.rfindn(words) : text.rfind(words)) : (ignore_case ? text.findn(words) : text.find(words));
		if (at < 0) {
			return 0;
		}
		text = text.left(at) + into + text.substr(at + words.length());
		return 1;
	}

	static void tell(SCMachineBase *machine, SCMachineAction *action, int64_t count) {
		const StillHere here(machine);
		verbs::keep_if_named<&Kind::store_count_in>(machine, action, count);
		if (here) {
			verbs::send_either<&Kind::done_event, &Kind::not_found_event>(machine, action, count > 0, count);
		}
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StillHere here(machine);
		const files::Place place = files::place_or_fail<Kind, &Kind::path>(machine, action, files::WRITE);
		if (!place) {
			return;
		}
		const String words = with_plain_lines(files::filled_in<&Kind::find>(machine, action));
		const String into = with_plain_lines(files::filled_in<&Kind::replace_with>(machine, action));
		if (words.is_empty()) {
			files::fail<Kind>(machine, action, "Find is empty", "Type the words to change beside Find.");
			return;
		}
		String text;
		if (!read_from<Kind>(machine, action, place, text) || !here) {
			return;
		}
		const bool has_long_line_ends = text.contains("\r\n");
		text = with_plain_lines(text);
		const auto which = checked::choice<&Kind::which>(machine, action, Kind::FIRST);
		const int64_t count = change(text, words, into, which, setting_of<&Kind::ignore_case>(action));
		const String wrong = count > 0 ? files::write_text(place.path, has_long_line_ends ? text.replace("\n", "\r\n") : text) : String();
		if (!wrong.is_empty()) {
			files::fail<Kind>(machine, action, wrong, "Change a file that can be written.");
		} else if (here) {
			tell(machine, action, count);
		}
	}
};

const AddKinds added = {
	add_kind<SCReadFileAction, ReadFile>(),
	add_kind<SCWriteFileAction, WriteFile>(),
	add_kind<SCChangeTextInFileAction, ChangeTextInFile>(),
};

} // namespace
