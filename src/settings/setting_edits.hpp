#pragma once

// What follows when somebody edits a setting: the inspector lists the settings anew when other ones are shown now, and in the
// editor the object says that it changed, for whoever draws it. In a running game nobody lists settings unless he listens.

#include "settings/class_rows.hpp"

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/classes/resource.hpp>

#include <type_traits>

namespace setting_edits {

// Told by the engine before anything registers.
inline bool in_editor = false;

template <class T, class = void>
struct KnowsItsRow : std::false_type {};
template <class T>
struct KnowsItsRow<T, std::void_t<decltype(std::declval<const T &>().class_row())>> : std::true_type {};

template <class T>
const ClassRow *row_of(const T *object) {
	if constexpr (KnowsItsRow<T>::value) {
		return object->class_row();
	} else {
		return nullptr;
	}
}

// Somebody lists the settings of this object and is told when the list changes.
bool is_listed(const Object *object);

inline bool matter(const Object *object, const ClassRow *row, const SettingRow *setting) {
	return in_editor || (((row != nullptr && row->has_rules) || (setting != nullptr && setting->relists)) && is_listed(object));
}

// A bit for each setting that is shown only now and then.
uint64_t shown(const Object *object, const ClassRow *row);

template <class T>
void tell(T *object, const ClassRow *row, uint64_t shown_before, bool relists = false) {
	if (relists || shown(object, row) != shown_before) {
		object->notify_property_list_changed();
	}
	if constexpr (std::is_base_of_v<Resource, T>) {
		if (in_editor) {
			object->emit_changed();
		}
	} else if constexpr (std::is_base_of_v<Node, T>) {
		if (in_editor) {
			object->update_configuration_warnings();
		}
	}
}

} // namespace setting_edits
