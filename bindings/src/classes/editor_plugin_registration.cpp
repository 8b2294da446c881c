#include <godot_cpp/classes/editor_plugin_registration.hpp>

#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <algorithm>
#include <vector>

namespace godot {

namespace {

// There only while plugins are.
std::vector<StringName> *plugin_classes = nullptr;

} // namespace

void EditorPlugins::add_plugin_class(const StringName &p_class) {
	if (plugin_classes == nullptr) {
		plugin_classes = new std::vector<StringName>();
	}
	const bool is_known = std::find(plugin_classes->begin(), plugin_classes->end(), p_class) != plugin_classes->end();
	ERR_FAIL_COND_MSG(is_known, vformat("Editor plugin \"%s\" was added already.", p_class));
	plugin_classes->push_back(p_class);
	gdextension_interface::editor_add_plugin(p_class._native_ptr());
}

void EditorPlugins::remove_plugin_class(const StringName &p_class) {
	if (plugin_classes == nullptr) {
		return;
	}
	const auto found = std::find(plugin_classes->begin(), plugin_classes->end(), p_class);
	if (found == plugin_classes->end()) {
		return;
	}
	gdextension_interface::editor_remove_plugin(p_class._native_ptr());
	plugin_classes->erase(found);
}

void EditorPlugins::deinitialize() {
	if (plugin_classes == nullptr) {
		return;
	}
	while (!plugin_classes->empty()) {
		remove_plugin_class(StringName(plugin_classes->back()));
	}
	delete plugin_classes;
	plugin_classes = nullptr;
}

} // namespace godot
