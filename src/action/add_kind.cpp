#include "action/add_kind.hpp"

namespace {

int place_of(const String &class_name) {
	if (class_name == "SCWaitAction") {
		return -1;
	}
	return class_name == "SCAssertAction" ? 1 : 0;
}

struct ComesBefore {
	bool operator()(const KindEntry *left, const KindEntry *right) const {
		const String left_name = left->class_name();
		const String right_name = right->class_name();
		const int left_place = place_of(left_name);
		const int right_place = place_of(right_name);
		return left_place != right_place ? left_place < right_place : left_name < right_name;
	}
};

} // namespace

// Set before any entry comes to be linked, whichever file's turn it is first.
KindEntry *AddKinds::first = nullptr;

AddKinds::AddKinds(std::initializer_list<std::reference_wrapper<KindEntry>> entries) noexcept {
	for (KindEntry &entry : entries) {
		entry.next = first;
		first = &entry;
	}
}

LocalVector<KindEntry *> AddKinds::in_order() {
	LocalVector<KindEntry *> entries;
	for (KindEntry *entry = first; entry != nullptr; entry = entry->next) {
		entries.push_back(entry);
	}
	entries.sort_custom<ComesBefore>();
	return entries;
}

void register_kinds() {
	for (const KindEntry *entry : AddKinds::in_order()) {
		entry->register_class();
	}
}

void register_all_natives() {
	for (const KindEntry *entry : AddKinds::in_order()) {
		entry->add_runtime();
	}
}
