#include <godot_cpp/core/memory.hpp>

#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/gdextension_interface_loader.hpp>

namespace godot {

void *Memory::alloc_static(size_t p_bytes, bool p_pad_align) {
	void *memory = gdextension_interface::mem_alloc2(p_bytes, p_pad_align);
	ERR_FAIL_NULL_V(memory, nullptr);
	return memory;
}

void *Memory::realloc_static(void *p_memory, size_t p_bytes, bool p_pad_align) {
	return gdextension_interface::mem_realloc2(p_memory, p_bytes, p_pad_align);
}

void Memory::free_static(void *p_memory, bool p_pad_align) {
	if (p_memory != nullptr) {
		gdextension_interface::mem_free2(p_memory, p_pad_align);
	}
}

} // namespace godot
