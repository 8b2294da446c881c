#include "allocation_counter.hpp"

#include <godot_cpp/core/class_db.hpp>

#include <dlfcn.h>

using namespace godot;

namespace {

template <class Function>
Function preloaded(const char *name) {
	return reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name));
}

} // namespace

bool AllocationCounter::is_available() {
	return preloaded<void *>("allocations_begin") != nullptr;
}

bool AllocationCounter::begin(const String &part_of_path) {
	const CharString text = part_of_path.utf8();
	const auto begin_counting = preloaded<int (*)(const char *)>("allocations_begin");
	return begin_counting != nullptr && begin_counting(text.get_data()) != 0;
}

int64_t AllocationCounter::end() {
	const auto end_counting = preloaded<long (*)()>("allocations_end");
	return end_counting != nullptr ? end_counting() : -1;
}

PackedStringArray AllocationCounter::sites() {
	PackedStringArray offsets;
	const auto site = preloaded<uintptr_t (*)(int)>("allocations_site");
	for (int i = 0; site != nullptr && site(i) != 0; i++) {
		offsets.push_back("0x" + String::num_int64(int64_t(site(i)), 16));
	}
	return offsets;
}

void AllocationCounter::_bind_methods() {
	ClassDB::bind_static_method("AllocationCounter", D_METHOD("is_available"), &AllocationCounter::is_available);
	ClassDB::bind_static_method("AllocationCounter", D_METHOD("begin", "part_of_path"), &AllocationCounter::begin);
	ClassDB::bind_static_method("AllocationCounter", D_METHOD("end"), &AllocationCounter::end);
	ClassDB::bind_static_method("AllocationCounter", D_METHOD("sites"), &AllocationCounter::sites);
}
