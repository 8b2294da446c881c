// The compiled runtime of Save Game, and what the script that saves whole scenes asks of the library.

#include "action/add_kind.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/scene/save_files.hpp"
#include "kinds/scene/saved_values.hpp"
#include "kinds/scene/saving.hpp"
#include "kinds/scene/scene_values.hpp"
#include "kinds/scene/values_at_once.hpp"
#include "machine/native_names.hpp"
#include "machine_node/values_setup.hpp"

#include <godot_cpp/classes/json.hpp>
#include <godot_cpp/templates/hash_set.hpp>

namespace {

using Kind = SCSaveGameAction;

struct Names {
	StringName scene_save = "quillstead_scene_save";
	StringName save = "save";
	StringName load_into = "load_into";
	String global_prefix = "global:";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// What goes into one file of variables.
class Writing {
	Dictionary held;
	int64_t letters = 0;

public:
	void add(const String &key, const Variant &value) {
		Variant encoded;
		if (letters <= saved_values::MOST_LETTERS && saved_values::encode(value, encoded, letters)) {
			held[key] = encoded;
		}
	}
	bool has(const String &key) const { return held.has(key); }
	bool write(const String &path) const { return letters <= saved_values::MOST_LETTERS && save_files::write(path, JSON::stringify(held, "\t", true, false)); }
};

bool save(SCMachineBase *machine, const String &path, const Array &wanted) {
	const Array kept = wanted.is_empty() ? machine->run().values_dictionary().keys() : wanted;
	Writing writing;
	for (int64_t i = 0; i < kept.size(); i++) {
		writing.add(kept[i], machine->get_value(kept[i]));
	}
	const Array globals = wanted.is_empty() ? MachineValues::global_names() : Array();
	for (int64_t i = 0; i < globals.size(); i++) {
		// A variable of the machine's own goes before.
		if (!writing.has(globals[i])) {
			writing.add(names().global_prefix + String(globals[i]), MachineValues::global_value(globals[i], Variant()));
		}
	}
	return writing.write(path);
}

// What comes out of one file of variables. All of it is read before any of it is taken.
class Loading {
	SCMachineBase *machine;
	// Empty for all that the machine has and all globals.
	HashSet<StringName> wanted;
	bool is_encoded = true;
	ValuesAtOnce own;
	Dictionary globals;

	// False when it is broken.
	bool read_value(const Variant &json, bool encoded_by_itself, Variant &value) const {
		if (!is_encoded && !encoded_by_itself) {
			value = json;
			return true;
		}
		return saved_values::decode(json, value) != saved_values::BROKEN || !is_encoded;
	}

	bool read_global(const StringName &name, const Variant &json) {
		const Variant now = MachineValues::global_value(name, Variant());
		Variant value;
		if (now.get_type() == Variant::OBJECT) {
			return true;
		}
		if (!read_value(json, false, value)) {
			return false;
		}
		value = saved_values::fitted_to(now, value);
		if (value.get_type() != Variant::NIL || now.get_type() == Variant::NIL) {
			globals[name] = value;
		}
		return true;
	}

	bool read_own(const StringName &name, const Variant &json) {
		const Variant now = machine->get_value(name);
		Variant value;
		if (now.get_type() == Variant::OBJECT) {
			return true;
		}
		if (!read_value(json, json.get_type() == Variant::DICTIONARY && saved_values::looks_encoded(json), value)) {
			return false;
		}
		value = saved_values::fitted_to(now, value);
		if (value.get_type() != Variant::NIL || now.get_type() == Variant::NIL) {
			own.add(name, value);
		}
		return true;
	}

public:
	Loading(SCMachineBase *of_machine, const Array &names_wanted) : machine(of_machine) {
		for (int64_t i = 0; i < names_wanted.size(); i++) {
			wanted.insert(names_wanted[i]);
		}
	}

	bool read(const String &path) {
		Dictionary held;
		if (!save_files::read(path, held)) {
			return false;
		}
		const Array keys = held.keys();
		const Array values = held.values();
		// A machine without any variable takes whatever there is.
		const bool takes_all = wanted.is_empty() && machine->run().values_dictionary().is_empty();
		for (int64_t i = 0; i < values.size() && is_encoded; i++) {
			is_encoded = saved_values::looks_encoded(values[i]);
		}
		for (int64_t i = 0; i < keys.size(); i++) {
			const String key = keys[i];
			if (key.begins_with(names().global_prefix)) {
				if (wanted.is_empty() && !read_global(key.substr(names().global_prefix.length()), values[i])) {
					return false;
				}
				continue;
			}
			const StringName name = key;
			const bool is_wanted = takes_all || (wanted.is_empty() ? machine->has_value(name) : wanted.has(name));
			if (is_wanted && !read_own(name, values[i])) {
				return false;
			}
		}
		return true;
	}

	// May run a game's code, and the machine may be gone then.
	void take() {
		own.put_into(machine->run());
		const Array keys = globals.keys();
		for (int64_t i = 0; i < keys.size(); i++) {
			MachineValues::set_global_value(keys[i], globals[keys[i]]);
		}
	}
};

bool load(SCMachineBase *machine, const String &path, const Array &wanted) {
	Loading loading(machine, wanted);
	if (!loading.read(path)) {
		return false;
	}
	loading.take();
	return true;
}

bool ask_script(SCMachineBase *machine, const String &path, const StringName &method) {
	return !path.is_empty() && CompanionScripts::call(names().scene_save, method, Array::make(machine, path)).booleanize();
}

bool do_it(SCMachineBase *machine, Kind::What what, const String &slot, const Array &wanted) {
	const String path = save_files::path_of(slot);
	const String scene_path = save_files::scene_path_of(slot);
	switch (what) {
		case Kind::LOAD:
			return load(machine, path, wanted);
		case Kind::DELETE: {
			const bool is_gone = save_files::remove(path);
			return save_files::remove(scene_path) || is_gone;
		}
		case Kind::EXISTS:
			return save_files::exists(path) || save_files::exists(scene_path);
		case Kind::SAVE_THE_SCENE:
			return ask_script(machine, scene_path, names().save);
		case Kind::LOAD_THE_SCENE:
			return ask_script(machine, scene_path, names().load_into);
		case Kind::SAVE:
			break;
	}
	return save(machine, path, wanted);
}

bool are_texts(const Array &arguments, int64_t count) {
	for (int64_t i = 0; i < arguments.size(); i++) {
		if (arguments[i].get_type() != Variant::STRING) {
			return false;
		}
	}
	return arguments.size() == count;
}

Variant help_write_save(const Array &arguments) {
	return are_texts(arguments, 2) && save_files::write(arguments[0], arguments[1]);
}

Variant help_read_save(const Array &arguments) {
	Dictionary held;
	return are_texts(arguments, 1) && save_files::read(arguments[0], held) ? Variant(held) : Variant();
}

// In a list, as nothing is a value too.
Variant help_encode_saved(const Array &arguments) {
	Variant encoded;
	int64_t letters = 0;
	return arguments.size() == 1 && saved_values::encode(arguments[0], encoded, letters) ? Variant(Array::make(encoded)) : Variant();
}

Variant help_decode_saved(const Array &arguments) {
	Variant value;
	return arguments.size() == 1 && saved_values::decode(arguments[0], value) == saved_values::DECODED ? Variant(Array::make(value)) : Variant();
}

class SaveGame : public SCNativeAction {
public:
	SaveGame() {
		SCNativeActions::add_helper("write_save", &help_write_save);
		SCNativeActions::add_helper("read_save", &help_read_save);
		SCNativeActions::add_helper("encode_saved", &help_encode_saved);
		SCNativeActions::add_helper("decode_saved", &help_decode_saved);
		scene_values::add_helpers();
	}

	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		const MachineRun &run = machine->run();
		const String slot = words::text_of(values::value_of(machine, setting_of<&Kind::slot>(action), setting_of<&Kind::slot_variable>(action)));
		const TypedArray<StringName> wanted = setting_of<&Kind::variables>(action);
		if (!here) {
			return;
		}
		// Whoever hears of what is loaded may free the machine.
		const bool worked = do_it(machine, setting_of<&Kind::what>(action), slot, wanted);
		tell(run, machine, action, index, worked, here);
	}

	// The loaded game goes on from the very moment of the saving, which had worked.
	bool take_up(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		tell(machine->run(), machine, action, index, true, here);
		return true;
	}

private:
	static void tell(const MachineRun &run, SCMachineBase *machine, SCMachineAction *action, int index, bool worked, const StillHere &here) {
		// What is loaded may lead the machine elsewhere by itself. It hears all the same that it was.
		if (run.machine() != nullptr) {
			verbs::keep_if_named<&Kind::store_worked_in>(machine, action, worked);
		}
		if (here) {
			verbs::send_either<&Kind::worked_event, &Kind::failed_event>(machine, action, worked);
		}
		if (here) {
			machine->finish(index);
		}
	}
};

const AddKinds added = {
	add_kind<SCSaveGameAction, SaveGame>(),
};

} // namespace
