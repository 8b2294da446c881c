#include <godot_cpp/core/gdvirtual.hpp>

#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/gdextension_interface_loader.hpp>

namespace godot {
namespace internal {

bool has_script_virtual(GDExtensionConstObjectPtr p_owner, const StringName &p_name) {
	return gdextension_interface::object_has_script_method(p_owner, p_name._native_ptr());
}

bool call_script_virtual(GDExtensionObjectPtr p_owner, const StringName &p_name, const Variant *p_arguments, int p_count, Variant &r_return) {
	constexpr int MAX_ARGUMENTS = 16;
	ERR_FAIL_COND_V(p_count > MAX_ARGUMENTS, false);
	GDExtensionConstVariantPtr pointers[MAX_ARGUMENTS + 1] = {};
	for (int i = 0; i < p_count; i++) {
		pointers[i] = &p_arguments[i];
	}
	GDExtensionCallError error = { GDEXTENSION_CALL_OK, 0, 0 };
	gdextension_interface::object_call_script_method(p_owner, p_name._native_ptr(), pointers, p_count, &r_return, &error);
	if (likely(error.error == GDEXTENSION_CALL_OK)) {
		return true;
	}
	// The editor's stand-in for a script that is no tool has the method and does not run it.
	if (error.error != GDEXTENSION_CALL_ERROR_INVALID_METHOD) {
		ERR_PRINT(vformat("The script's method \"%s\" cannot be called with the %d arguments that it is given: its parameters differ.", p_name, p_count));
	}
	return false;
}

} // namespace internal
} // namespace godot
