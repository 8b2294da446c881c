#pragma once

// What kind an action or a condition is, for everything that is found out once per kind and kept: its
// twins, its naming settings, its settings of any type. A kind is a script, or a class without one.

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/classes/script.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/property_info.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/typed_array.hpp>
#include <godot_cpp/variant/typed_dictionary.hpp>

#include <mutex>

using namespace godot;

class BoundSettings;
struct ClassRow;

struct Kind {
	Ref<Script> script;
	StringName native_class;

	static Kind of(const Object *object);
	// From a script or the name of a class.
	static Kind from(const Variant &key);
	// The script if there is one, else the class's name.
	Variant key() const;
	// The script's global name, else the class's.
	StringName name() const;
	bool is_action_or_condition() const;
	// Changes when the script is edited; always 0 in a running game.
	uint32_t stamp() const;
	// Every property it declares, its own script's first, down to but not including the two bases.
	LocalVector<PropertyInfo> declared_properties() const;

	// True for a script that goes by the name of one of the two bases.
	static bool is_a_base(const Ref<Script> &script);
};

// The fields that both bases have, of an object that is either. All null for any other.
struct KindFields {
	TypedDictionary<StringName, StringName> *from_variables = nullptr;
	TypedDictionary<StringName, Variant> *typed_in = nullptr;
	BoundSettings *bound = nullptr;
	const ClassRow *row = nullptr;

	static KindFields of(Object *object);
	explicit operator bool() const { return from_variables != nullptr; }
};

PropertyInfo property_from(const Dictionary &described);
Dictionary dictionary_from(const PropertyInfo &property);
// As the object shows them at this moment.
LocalVector<PropertyInfo> properties_of(const Object *object);
bool is_in_editor(const PropertyInfo &property);

// What is kept per kind. An entry once handed out stays where it is until the library goes, since
// loader threads ask too.
template <class T>
class PerKind {
	struct Entry {
		T *found = nullptr;
		uint32_t stamp = 0;
	};
	mutable std::mutex lock;
	HashMap<uint64_t, Entry> by_script;
	HashMap<StringName, Entry> by_class;
	LocalVector<T *> made;

	const Entry *entry_of(const Kind &kind) const {
		return kind.script.is_valid() ? by_script.getptr(kind.script->get_instance_id()) : by_class.getptr(kind.native_class);
	}

public:
	~PerKind() {
		for (T *one : made) {
			memdelete(one);
		}
	}

	template <class Make>
	const T &of(const Kind &kind, Make make) {
		const uint32_t stamp = kind.stamp();
		{
			const std::lock_guard<std::mutex> hold(lock);
			const Entry *known = entry_of(kind);
			if (known != nullptr && known->stamp == stamp) {
				return *known->found;
			}
		}
		T *fresh = memnew(T);
		make(*fresh);
		const std::lock_guard<std::mutex> hold(lock);
		made.push_back(fresh);
		if (kind.script.is_valid()) {
			by_script.insert(kind.script->get_instance_id(), Entry{ fresh, stamp });
		} else {
			by_class.insert(kind.native_class, Entry{ fresh, stamp });
		}
		return *fresh;
	}
};
