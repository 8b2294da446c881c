// Adds the extension's editor plugins, by class, in the initializer of the editor level; they are removed when that level ends.

#ifndef GODOT_CPP_CLASSES_EDITOR_PLUGIN_REGISTRATION_HPP
#define GODOT_CPP_CLASSES_EDITOR_PLUGIN_REGISTRATION_HPP

#include <godot_cpp/variant/string_name.hpp>

namespace godot {

class EditorPlugins {
public:
	static void add_plugin_class(const StringName &p_class);
	static void remove_plugin_class(const StringName &p_class);
	static void deinitialize();

	template <class T>
	static void add_by_type() {
		add_plugin_class(T::get_class_static());
	}
	template <class T>
	static void remove_by_type() {
		remove_plugin_class(T::get_class_static());
	}
};

} // namespace godot

#endif // GODOT_CPP_CLASSES_EDITOR_PLUGIN_REGISTRATION_HPP
