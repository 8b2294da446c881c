#include "machine/native_names.hpp"

#include <godot_cpp/templates/local_vector.hpp>

namespace {

LocalVector<void (*)()> *to_free = nullptr;

} // namespace

void NativeNames::free_later(void (*free_one)()) {
	if (to_free == nullptr) {
		to_free = memnew(LocalVector<void (*)()>);
	}
	to_free->push_back(free_one);
}

void NativeNames::free_shared() {
	if (to_free == nullptr) {
		return;
	}
	for (void (*free_one)() : *to_free) {
		free_one();
	}
	memdelete(to_free);
	to_free = nullptr;
}
