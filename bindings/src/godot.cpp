#include <godot_cpp/godot.hpp>

#include <godot_cpp/classes/editor_plugin_registration.hpp>
#include <godot_cpp/classes/wrapped.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/engine_ptrcall.hpp>
#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/core/static_name.hpp>

#include <cstdio>

namespace godot {

namespace internal {

GDExtensionInterfaceGetProcAddress get_proc_address = nullptr;
GDExtensionClassLibraryPtr library = nullptr;
void *token = nullptr;

// Generated.
void register_engine_classes();

} // namespace internal

namespace {

constexpr uint32_t OLDEST_MAJOR = 4;
constexpr uint32_t OLDEST_MINOR = 6;

GDExtensionBinding::Callback extension_initializer = nullptr;
GDExtensionBinding::Callback extension_terminator = nullptr;
int levels_up = 0;

void initialize_level(void *, GDExtensionInitializationLevel p_level) {
	if (levels_up == 0) {
		internal::register_engine_classes();
	}
	levels_up++;
	ClassDB::initialize(p_level);
	if (extension_initializer != nullptr) {
		extension_initializer(static_cast<ModuleInitializationLevel>(p_level));
	}
}

void deinitialize_level(void *, GDExtensionInitializationLevel p_level) {
	if (extension_terminator != nullptr) {
		extension_terminator(static_cast<ModuleInitializationLevel>(p_level));
	}
	if (p_level == GDEXTENSION_INITIALIZATION_EDITOR) {
		EditorPlugins::deinitialize();
	}
	ClassDB::deinitialize(p_level);
	levels_up--;
	if (levels_up == 0) {
		// The engine calls nothing of ours from here on. After a hot reload all of it is found anew.
		internal::EngineSingleton::forget_all();
		internal::release_engine_classes();
		internal::StaticName::release_all();
	}
}

bool is_engine_new_enough() {
	if (gdextension_interface::get_godot_version2 == nullptr) {
		return false;
	}
	GDExtensionGodotVersion2 version = {};
	gdextension_interface::get_godot_version2(&version);
	return version.major > OLDEST_MAJOR || (version.major == OLDEST_MAJOR && version.minor >= OLDEST_MINOR);
}

} // namespace

GDExtensionBinding::InitObject::InitObject(
		GDExtensionInterfaceGetProcAddress p_get_proc_address, GDExtensionClassLibraryPtr p_library, GDExtensionInitialization *r_initialization) :
		get_proc_address(p_get_proc_address),
		library(p_library), initialization(r_initialization) {}

GDExtensionBool GDExtensionBinding::InitObject::init() const {
	if (get_proc_address == nullptr || library == nullptr || initialization == nullptr) {
		fprintf(stderr, "The engine did not hand over what an extension needs.\n");
		return false;
	}
	internal::get_proc_address = get_proc_address;
	internal::library = library;
	internal::token = library;

	const bool is_loaded = gdextension_interface::load_interface(get_proc_address);
	internal::init_opaque_values();
	if (!is_engine_new_enough()) {
		char message[128];
		snprintf(message, sizeof(message), "This extension needs Godot %u.%u or later.", OLDEST_MAJOR, OLDEST_MINOR);
		ERR_FAIL_V_MSG(false, static_cast<const char *>(message));
	}
	if (!is_loaded || !Variant::init_bindings()) {
		return false;
	}

	extension_initializer = initializer;
	extension_terminator = terminator;
	initialization->minimum_initialization_level = static_cast<GDExtensionInitializationLevel>(minimum_level);
	initialization->userdata = nullptr;
	initialization->initialize = &initialize_level;
	initialization->deinitialize = &deinitialize_level;
	return true;
}

} // namespace godot
