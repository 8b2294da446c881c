#include "machine_node/place_in_file.hpp"

#include "machine/native_names.hpp"

namespace place_in_file {

namespace {

struct Names {
	StringName came_from = "quillstead_came_from";
	StringName copied_from = "quillstead_copied_from";
};

// Empty for what no file brings.
String place_of(Node *node) {
	if (node->get_owner() == nullptr) {
		return String();
	}
	// The scene may be one within another.
	Node *top = node->get_owner();
	while (top->get_owner() != nullptr) {
		top = top->get_owner();
	}
	return String(top->get_path_to(node));
}

} // namespace

void note_moving(Node *node) {
	const StringName &came_from = NativeNames::of<Names>().came_from;
	const String place = node->has_meta(came_from) ? String() : place_of(node);
	if (!place.is_empty()) {
		node->set_meta(came_from, place);
	}
}

void note_copied(Node *original, Node *copy) {
	const Names &names = NativeNames::of<Names>();
	if (copy->has_meta(names.copied_from)) {
		return;
	}
	if (copy->has_meta(names.came_from)) {
		copy->set_meta(names.copied_from, copy->get_meta(names.came_from));
		copy->remove_meta(names.came_from);
		return;
	}
	const String place = place_of(original);
	if (!place.is_empty()) {
		copy->set_meta(names.copied_from, place);
	}
}

} // namespace place_in_file
