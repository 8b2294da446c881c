#include <godot_cpp/core/error_macros.hpp>

#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/variant/char_string.hpp>
#include <godot_cpp/variant/string.hpp>

#include <cstdio>

namespace godot {

void _err_print_error(
		const char *p_function, const char *p_file, int p_line, const char *p_error, const char *p_message, bool p_editor_notify, bool p_is_warning) {
	const bool has_message = p_message != nullptr && p_message[0] != 0;
	if (unlikely(!gdextension_interface::print_error || !gdextension_interface::print_warning)) {
		fprintf(stderr, "%s: %s\n   at: %s (%s:%d)\n", p_is_warning ? "WARNING" : "ERROR", has_message ? p_message : p_error, p_function, p_file, p_line);
		return;
	}
	if (has_message) {
		const auto print = p_is_warning ? gdextension_interface::print_warning_with_message : gdextension_interface::print_error_with_message;
		if (print) {
			print(p_error, p_message, p_function, p_file, p_line, p_editor_notify);
			return;
		}
		p_error = p_message;
	}
	const auto print = p_is_warning ? gdextension_interface::print_warning : gdextension_interface::print_error;
	print(p_error, p_function, p_file, p_line, p_editor_notify);
}

void _err_print_error(const char *p_function, const char *p_file, int p_line, const char *p_error, bool p_editor_notify, bool p_is_warning) {
	_err_print_error(p_function, p_file, p_line, p_error, "", p_editor_notify, p_is_warning);
}

void _err_print_error(const char *p_function, const char *p_file, int p_line, const String &p_error, bool p_editor_notify, bool p_is_warning) {
	_err_print_error(p_function, p_file, p_line, p_error.utf8().get_data(), "", p_editor_notify, p_is_warning);
}

void _err_print_error(
		const char *p_function, const char *p_file, int p_line, const String &p_error, const char *p_message, bool p_editor_notify, bool p_is_warning) {
	_err_print_error(p_function, p_file, p_line, p_error.utf8().get_data(), p_message, p_editor_notify, p_is_warning);
}

void _err_print_error(
		const char *p_function, const char *p_file, int p_line, const char *p_error, const String &p_message, bool p_editor_notify, bool p_is_warning) {
	_err_print_error(p_function, p_file, p_line, p_error, p_message.utf8().get_data(), p_editor_notify, p_is_warning);
}

void _err_print_error(
		const char *p_function, const char *p_file, int p_line, const String &p_error, const String &p_message, bool p_editor_notify, bool p_is_warning) {
	_err_print_error(p_function, p_file, p_line, p_error.utf8().get_data(), p_message.utf8().get_data(), p_editor_notify, p_is_warning);
}

void _err_print_index_error(const char *p_function, const char *p_file, int p_line, int64_t p_index, int64_t p_size, const char *p_index_str,
		const char *p_size_str, const char *p_message, bool p_editor_notify, bool p_fatal) {
	char error[512];
	snprintf(error, sizeof(error), "%sIndex %s = %lld is out of bounds (%s = %lld).", p_fatal ? "FATAL: " : "", p_index_str, static_cast<long long>(p_index),
			p_size_str, static_cast<long long>(p_size));
	_err_print_error(p_function, p_file, p_line, error, p_message, p_editor_notify, false);
}

void _err_print_index_error(const char *p_function, const char *p_file, int p_line, int64_t p_index, int64_t p_size, const char *p_index_str,
		const char *p_size_str, const String &p_message, bool p_editor_notify, bool p_fatal) {
	_err_print_index_error(p_function, p_file, p_line, p_index, p_size, p_index_str, p_size_str, p_message.utf8().get_data(), p_editor_notify, p_fatal);
}

void _err_flush_stdout() {
	fflush(stdout);
}

} // namespace godot
