#include "action/cached_names.hpp"

#include <godot_cpp/templates/local_vector.hpp>

using namespace godot;

namespace {

LocalVector<void (*)()> *to_free = nullptr;

} // namespace

void CachedNames::free_with_the_library(Free free) {
	if (to_free == nullptr) {
		to_free = memnew(LocalVector<Free>);
	}
	to_free->push_back(free);
}

void CachedNames::free_shared() {
	if (to_free == nullptr) {
		return;
	}
	for (const Free free : *to_free) {
		free();
	}
	memdelete(to_free);
	to_free = nullptr;
}
