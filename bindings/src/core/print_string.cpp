#include <godot_cpp/core/print_string.hpp>

#include <godot_cpp/classes/os.hpp>

namespace godot {

bool is_print_verbose_enabled() {
	const OS *os = OS::get_singleton();
	return os && os->is_stdout_verbose();
}

} // namespace godot
