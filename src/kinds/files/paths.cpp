#include "kinds/files/paths.hpp"

#include <godot_cpp/classes/dir_access.hpp>
#include <godot_cpp/classes/os.hpp>
#include <godot_cpp/classes/project_settings.hpp>

namespace {

const char *const GAMES_OWN = "user://";
const char *const SHIPPED = "res://";
const char *const TICK_ANYWHERE = "Use a path that begins with user://, or tick Anywhere.";

// The folders and the last name of a path below its beginning. False when ".." leads above that.
bool parts_below(const String &below, PackedStringArray &parts) {
	const PackedStringArray all = below.split("/", false);
	for (int64_t i = 0; i < all.size(); i++) {
		if (all[i] == "..") {
			if (parts.is_empty()) {
				return false;
			}
			parts.resize(parts.size() - 1);
		} else if (all[i] != ".") {
			parts.push_back(all[i]);
		}
	}
	return true;
}

// Links that the player or another program has put into the folder are followed as far as they go. Nothing below `root` is
// taken for a folder of the game that is not one.
bool leads_out_by_a_link(const String &root, PackedStringArray parts) {
	constexpr int MOST_LINKS = 40;
	const Ref<DirAccess> folder = DirAccess::open(root);
	if (folder.is_null()) {
		return false;
	}
	String reached = root;
	for (int64_t i = 0, links = 0; i < parts.size(); i++) {
		const String next = reached.path_join(parts[i]);
		if (!folder->is_link(next)) {
			reached = next;
			continue;
		}
		String target = folder->read_link(next).replace("\\", "/");
		target = (target.is_absolute_path() ? target : reached.path_join(target)).simplify_path();
		if (++links > MOST_LINKS || !files::is_within(target, root)) {
			return true;
		}
		PackedStringArray from_there = target.substr(root.length()).split("/", false);
		from_there.append_array(parts.slice(i + 1));
		parts = from_there;
		reached = root;
		i = -1;
	}
	return false;
}

// The folder that holds the game, or the game's own files, goes with whatever holds it.
bool holds_the_game(const String &path) {
	const OS *computer = OS::get_singleton();
	const String project = files::on_the_computer(SHIPPED);
	return files::is_within(computer->get_user_data_dir(), path) || files::is_within(computer->get_executable_path(), path) ||
			(!project.is_empty() && files::is_within(project, path));
}

files::Place refused(const String &wrong, const String &remedy) {
	return { String(), wrong, remedy };
}

files::Place in_games_own(const String &shown, const String &below, bool anywhere) {
	const String root = files::on_the_computer(GAMES_OWN);
	PackedStringArray parts;
	if (!parts_below(below, parts)) {
		if (anywhere) {
			return { root.path_join(below).simplify_path(), String(), String() };
		}
		return refused(vformat("%s leads out of the game's own folder", shown), TICK_ANYWHERE);
	}
	if (!anywhere && leads_out_by_a_link(root, parts)) {
		return refused(vformat("%s goes through a link that leads out of the game's own folder", shown), TICK_ANYWHERE);
	}
	return { GAMES_OWN + String("/").join(parts), String(), String() };
}

files::Place in_shipped(const String &shown, const String &below, files::Use use) {
	if (use != files::READ) {
		return refused(vformat("%s is one of the files that the game is shipped with, which an exported game cannot change", shown),
				"Use a path that begins with user://.");
	}
	PackedStringArray parts;
	if (!parts_below(below, parts)) {
		return refused(vformat("%s leads out of the game's files", shown), "Take the .. out of it.");
	}
	return { SHIPPED + String("/").join(parts), String(), String() };
}

} // namespace

namespace files {

Place place_of(const String &typed, Use use, bool anywhere, const String &setting) {
	const String path = typed.strip_edges().replace("\\", "/");
	const String shown = in_warning(typed);
	Place place;
	if (path.is_empty()) {
		return refused(vformat("%s is empty", setting), vformat("Type a path beside %s, such as user://notes.txt.", setting));
	}
	if (path.begins_with(GAMES_OWN)) {
		place = in_games_own(shown, path.substr(String(GAMES_OWN).length()), anywhere);
	} else if (path.begins_with(SHIPPED)) {
		place = in_shipped(shown, path.substr(String(SHIPPED).length()), use);
	} else if (path.contains("://")) {
		return refused(vformat("%s is no place on this computer", shown), "Use a path that begins with user://.");
	} else if (!path.is_absolute_path()) {
		return refused(vformat("%s does not say which folder it is in", shown), "Begin it with user://, for the game's own folder.");
	} else {
		const String straight = path.simplify_path();
		const String own = on_the_computer(GAMES_OWN);
		if (is_within(straight, own)) {
			place = in_games_own(shown, straight.substr(own.length()), anywhere);
		} else if (!anywhere) {
			return refused(vformat("%s is outside the game's own folder", shown), TICK_ANYWHERE);
		} else {
			place = { straight, String(), String() };
		}
	}
	if (place && use == TAKE_AWAY && holds_the_game(on_the_computer(place.path))) {
		return refused(vformat("the game itself, or all that it keeps, is in %s", shown), vformat("Name what is to go beside %s.", setting));
	}
	return place;
}

String on_the_computer(const String &path) {
	const String there = ProjectSettings::get_singleton()->globalize_path(path).simplify_path();
	return there.is_absolute_path() && !there.contains("://") ? there : String();
}

bool is_within(const String &inner, const String &outer) {
	const String folder = outer.ends_with("/") ? outer : outer + String("/");
	return !outer.is_empty() && (inner == outer || inner.begins_with(folder));
}

bool is_folder(const String &path) {
	return DirAccess::dir_exists_absolute(path);
}

String filled_in(SCMachineBase *machine, const SCMachineAction *action, const String &text, const StringName &setting) {
	return action->is_typed_in(setting) ? words::fill_in(text, machine) : text;
}

Place place_or_warn(SCMachineBase *machine, const SCMachineAction *action, const String &typed, const StringName &setting, Use use, bool anywhere) {
	const Place place = place_of(typed, use, anywhere, verbs::setting_in_inspector(setting));
	if (!place) {
		warn_nothing_done(machine, action, place.wrong, place.remedy);
	}
	return place;
}

void warn_nothing_done(SCMachineBase *machine, const SCMachineAction *action, const String &wrong, const String &remedy) {
	verbs::warn(machine, action, vformat("%s, so nothing was done. %s", wrong, remedy));
}

void add_names_in(const String &text, PackedStringArray &names) {
	const PackedStringArray in_braces = words::names_in(text);
	for (int64_t i = 0; i < in_braces.size(); i++) {
		if (!names.has(in_braces[i])) {
			names.push_back(in_braces[i]);
		}
	}
}

String in_warning(const String &path) {
	constexpr int64_t MOST_SHOWN = 160;
	const String line = path.strip_edges().replace("\n", " ");
	return line.length() > MOST_SHOWN ? line.left(MOST_SHOWN - 3) + "..." : line;
}

String in_line(const String &text) {
	constexpr int64_t MOST_SHOWN = 40;
	const String line = text.replace("\n", " ");
	return "\"" + (line.length() > MOST_SHOWN ? line.left(MOST_SHOWN - 3) + "..." : line) + "\"";
}

} // namespace files
